#include "export/functions/PDFPrintFunction.h"
#include "export/functions/PrintProfile.h"
#include "platform/base/Causes.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/CGColorSpace.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/ConversionFromSRGB.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelConversion.h"

#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>

namespace lamina {

namespace {

using Convert = std::function<void(std::uint8_t* rgba, int count)>;

constexpr std::size_t kPixelCost = 16; // in plain ones, for sharing rows out

void layOnWhite(std::uint8_t* premultiplied, int count)
{
    for (std::uint8_t* end = premultiplied + 4 * static_cast<std::ptrdiff_t>(count); premultiplied != end;
         premultiplied += 4) {
        const unsigned white = 255u - premultiplied[3];
        for (std::size_t c = 0; c < 3; ++c)
            premultiplied[c] = static_cast<std::uint8_t>(premultiplied[c] + white);
        premultiplied[3] = 255;
    }
}

/// The stored pixels, laid on white and then converted in place.
CGImage converted(const CGImage& image, CGImageLayout layout, const Convert& convert)
{
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    if (!buffer)
        return {};
    const RowConverter rows(image, AlphaForm::Premultiplied);
    const bool translucent = image.hasAlpha();
    parallelRows(0, layout.height, kPixelCost * static_cast<std::size_t>(layout.width), [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            std::uint8_t* row = buffer.data() + static_cast<std::size_t>(y) * layout.bytesPerRow;
            rows.convert(0, y, layout.width, row);
            if (translucent)
                layOnWhite(row, layout.width);
            if (convert)
                convert(row, layout.width);
        }
    });
    return CGImage::make(layout, std::move(buffer));
}

Result<UIImage> prepared(const UIImage& image, const std::optional<CGColorSpace>& space, const Convert& convert)
{
    if (!image)
        return Error{{}, "there is no picture"};
    const UIImage upright = image.upright();
    // A mask is rare enough to be worth a copy of the pixels.
    const CGImage pixels = upright.cgImage().mask() ? convertedToSRGB(upright.cgImage()) : upright.cgImage();
    CGImageLayout layout = CGImageLayout::rgba(pixels.width(), pixels.height(), CGImageAlphaInfo::NoneSkipLast);
    if (space) {
        layout.colorSpace = *space;
        layout.bitmapInfo = bitmapInfo(CGImageAlphaInfo::None);
    }
    const CGImage result = pixels ? converted(pixels, layout, convert) : CGImage();
    if (!result)
        return Error{{}, cause::kNoMemory};
    return UIImage(result);
}

/// The conversion is kept: it takes longer to prepare than to use.
std::optional<ConversionFromSRGB> conversionTo(const CGColorSpace& space)
{
    struct Kept {
        std::mutex mutex;
        std::optional<CGColorSpace> space;
        std::optional<ConversionFromSRGB> conversion;
    };
    static Kept& kept = *new Kept;
    const std::lock_guard lock(kept.mutex);
    if (!kept.space || !(*kept.space == space)) {
        kept.conversion = ConversionFromSRGB::make(space.iccProfile(), space.model());
        kept.space = space;
    }
    return kept.conversion;
}

} // namespace

Result<UIImage> PDFPrintFunction::convertToRGB(const UIImage& image) const
{
    return prepared(image, std::nullopt, {});
}

Result<UIImage> PDFPrintFunction::convertToCMYK(const UIImage& image) const
{
    const Result<CGColorSpace> space = printColorSpace();
    if (!space)
        return space.error();
    const std::optional<ConversionFromSRGB> conversion = conversionTo(*space);
    if (!conversion)
        return Error{{}, "the colour profile for print is damaged"};
    return prepared(image, *space, [&](std::uint8_t* rgba, int count) { conversion->convert(rgba, count, rgba); });
}

} // namespace lamina
