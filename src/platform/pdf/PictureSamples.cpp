#include "platform/pdf/PictureSamples_p.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/image/drawing/SourcePixels.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PictureOpacity.h"
#include "platform/image/pixels/PixelConversion.h"
#include "platform/pdf/BandDeflater_p.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// Reads a row's components, `componentCount` bytes a pixel.
using RowReader = std::function<void(int y, std::uint8_t* row)>;

bool isInks(const CGImage& image)
{
    return image.colorSpace().model() == CGColorSpace::Model::CMYK && !image.hasAlpha() &&
           SourcePixels::components(image).has_value();
}

RowReader inkRows(const CGImage& image)
{
    return [pixels = *SourcePixels::components(image)](int y, std::uint8_t* row) {
        const std::uint8_t* const source = pixels.row(0, y, pixels.width(), row);
        if (source != row)
            std::memcpy(row, source, 4 * static_cast<std::size_t>(pixels.width()));
    };
}

/// `Count` bytes from the byte `first` on of each pixel of R G B A.
template <std::size_t Count>
RowReader rgbaRows(std::shared_ptr<const RowConverter> converter, std::size_t width, std::size_t first)
{
    return [converter = std::move(converter), width, first](int y, std::uint8_t* row) {
        std::vector<std::uint8_t> rgba(4 * width);
        converter->convert(0, y, static_cast<int>(width), rgba.data());
        for (std::size_t x = 0; x < width; ++x)
            for (std::size_t c = 0; c < Count; ++c)
                row[Count * x + c] = rgba[4 * x + first + c];
    };
}

/// The share of the work that a plane of samples is.
struct Share {
    double begin = 0;
    double end = 1;
};

PDFSamples samples(PDFColors colors, IntSize size, RowReader read, const PDFWatch& watch, Share share)
{
    const auto pixelBytes = static_cast<std::size_t>(componentCount(colors));
    DeflateRows rows{size.height, pixelBytes * static_cast<std::size_t>(size.width), pixelBytes, std::move(read)};
    PDFSamples result{colors, size, differencesPay(rows), {}};
    result.write = [rows = std::move(rows), predicted = result.predicted, &watch, share](const PDFSink& sink) {
        return deflateRows(rows, predicted, sink, [&](double done) -> Outcome {
            if (watch.cancelled && *watch.cancelled)
                return Error{{}, cause::kCancelled};
            if (watch.progress)
                watch.progress(share.begin + done * (share.end - share.begin));
            return success();
        });
    };
    return result;
}

} // namespace

Result<PictureSamples> pictureSamples(const UIImage& picture, const PDFWatch& watch)
{
    const CGImage upright = picture.upright().cgImage();
    const CGImage image = upright.mask() ? convertedToSRGB(upright) : upright;
    if (!image)
        return Error{{}, cause::kNoMemory};
    if (isInks(image))
        return PictureSamples{
            samples(PDFColors::CMYK, image.size(), inkRows(image), watch, {}), {}, image.colorSpace()};

    const auto converter = std::make_shared<const RowConverter>(image, AlphaForm::Straight);
    const auto width = static_cast<std::size_t>(image.width());
    const bool gray = image.colorSpace().model() == CGColorSpace::Model::Gray;
    const bool opaque = isOpaque(image, *converter);
    constexpr Share kAllButAlpha{0, 0.75};
    PictureSamples result{samples(gray ? PDFColors::Gray : PDFColors::SRGB, image.size(),
                                  gray ? rgbaRows<1>(converter, width, 0) : rgbaRows<3>(converter, width, 0), watch,
                                  opaque ? Share() : kAllButAlpha),
                          {},
                          CGColorSpace::deviceRGB()};
    if (!opaque)
        result.alpha =
            samples(PDFColors::Alpha, image.size(), rgbaRows<1>(converter, width, 3), watch, {kAllButAlpha.end, 1});
    return result;
}

} // namespace lamina
