#include "platform/host/ImageConversion.h"

#include "platform/base/UIColor.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/image/pixels/PixelKernels.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace lamina {

QImage qImage(const CGImage& image)
{
    return qImage(image, {0, 0, image.width(), image.height()});
}

QImage qImage(const CGImage& image, const IntRect& area)
{
    const bool opaque = image.alphaInfo() == CGImageAlphaInfo::NoneSkipLast;
    if (!image || image.bitsPerPixel() != 32 || (!opaque && image.alphaInfo() != CGImageAlphaInfo::PremultipliedLast))
        return {};
    const std::uint8_t* const first = image.row(area.y) + static_cast<std::size_t>(area.x) * 4;
    const QImage source(first, area.width, area.height, static_cast<qsizetype>(image.bytesPerRow()),
                        opaque ? QImage::Format_RGBX8888 : QImage::Format_RGBA8888_Premultiplied);
    return source.convertToFormat(opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
}

void copyPixels(const CGImage& image, const IntRect& area, QImage& target)
{
    static_assert(std::endian::native == std::endian::little, "Qt keeps blue first there");
    std::uint8_t* const pixels = target.bits(); // for all threads: it may copy what is shared
    const auto rowBytes = static_cast<std::size_t>(target.bytesPerLine());
    const auto width = static_cast<std::size_t>(area.width);
    const std::size_t left = 4 * static_cast<std::size_t>(area.x);
    parallelRows(area.y, area.bottom(), width, [&](int first, int last) {
        for (int y = first; y < last; ++y)
            kernels::reorder(image.row(y) + left, width, {2, 1, 0, 3}, 0,
                             pixels + static_cast<std::size_t>(y) * rowBytes + left);
    });
}

UIColor uiColor(const QColor& color, double alpha)
{
    return {color.redF(), color.greenF(), color.blueF(), color.alphaF() * alpha};
}

void drawOnPaper(const UIImage& picture, CGContext& context, const CGRect& paper, const CGRect& rect)
{
    if (picture.cgImage().hasAlpha() || picture.cgImage().mask()) {
        context.setFillColor(UIColor::white());
        context.fillRect(paper);
    }
    drawInRect(picture, context, rect);
}

} // namespace lamina
