#include "platform/image/codecs/PictureEncoding.h"

#include "platform/base/Causes.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/codecs/EncodedRows_p.h"
#include "platform/image/codecs/PictureEncoder_p.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelConversion.h"

#include <cassert>
#include <cstddef>
#include <new>
#include <utility>

namespace lamina {

namespace {

/// Grey and alpha of R G B A pixels whose colours are all grey.
CGImage grayPart(const CGImage& rgba)
{
    CGImageLayout layout = CGImageLayout::gray(rgba.width(), rgba.height());
    layout.bytesPerRow *= 2;
    layout.bitsPerPixel = 16;
    layout.bitmapInfo = bitmapInfo(CGImageAlphaInfo::Last);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    if (!buffer)
        return {};
    const auto width = static_cast<std::size_t>(rgba.width());
    parallelRows(0, rgba.height(), width, [&](int first, int last) {
        for (int y = first; y < last; ++y)
            packRow(rgba.row(y), width, StoredColors::GrayAlpha,
                    buffer.data() + static_cast<std::size_t>(y) * layout.bytesPerRow);
    });
    return CGImage::make(layout, std::move(buffer));
}

/// With the mask as alpha; a grey picture stays grey.
CGImage maskApplied(const CGImage& image)
{
    const CGImage shown = convertedToSRGB(image);
    return shown && image.colorSpace().model() == CGColorSpace::Model::Gray ? grayPart(shown) : shown;
}

Result<std::vector<std::uint8_t>> encodeShown(CGImage image, const PictureEncoder& encoder,
                                              const EncodeOptions& options)
{
    if (!image)
        return Error{{}, "there is no picture"};
    try {
        if (image.mask())
            image = maskApplied(image);
        if (!image)
            return Error{{}, cause::kNoMemory};
        return encoder.encode(std::move(image), options);
    } catch (const std::bad_alloc&) {
        return Error{{}, cause::kNoMemory};
    }
}

Result<std::vector<std::uint8_t>> encodeWith(const PictureEncoder& encoder, CGImage image, const std::string& subject,
                                             const EncodeOptions& options)
{
    Result<std::vector<std::uint8_t>> file = encodeShown(std::move(image), encoder, options);
    if (!file)
        return Error{subject, file.error().cause};
    return file;
}

} // namespace

Result<std::vector<std::uint8_t>> encodePicture(CGImage image, const PictureFormat& format, const std::string& subject,
                                                const EncodeOptions& options)
{
    assert(format.encoder);
    return encodeWith(*format.encoder, std::move(image), subject, options);
}

Result<std::vector<std::uint8_t>> encodePNG(CGImage image, const std::string& subject)
{
    return encodeWith(kPNGEncoder, std::move(image), subject, {});
}

} // namespace lamina
