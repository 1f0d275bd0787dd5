#include "imageops/DrawingSurface.h"
#include "imageops/ImageFilters.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/CGColorSpace.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelKernels.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

namespace lamina {

namespace {

CGImageLayout byteLayout(IntSize size, std::size_t bytesPerRow, const CGColorSpace& space, CGImageAlphaInfo alpha)
{
    CGImageLayout layout = CGImageLayout::gray(size.width, size.height);
    layout.bytesPerRow = bytesPerRow;
    layout.colorSpace = space;
    layout.bitmapInfo = bitmapInfo(alpha);
    return layout;
}

CGImage drawnOver(const CGImageLayout& layout, const CGImage& image)
{
    std::optional<CGContext> context =
        CGContext::bitmap(layout.width, layout.height, layout.bytesPerRow, layout.colorSpace, layout.bitmapInfo);
    if (!context)
        return {};
    context->setShouldAntialias(false);
    context->setInterpolationQuality(CGContext::Interpolation::High);
    context->drawImage(image, CGRect(0, 0, layout.width, layout.height));
    return context->makeImage();
}

/// Both bitmaps in one pass: what is drawn in grey over black, and the coverage that it is seen through.
CGImage grayThroughCoverage(const DrawnRows& rows, const CGImageLayout& gray, const CGImageLayout& coverage)
{
    const auto width = static_cast<std::size_t>(rows.width());
    PixelBuffer grays = PixelBuffer::allocate(gray.byteCount());
    PixelBuffer alphas = PixelBuffer::allocate(coverage.byteCount());
    if (!grays || !alphas)
        return {};
    parallelRows(0, rows.height(), width, [&](int first, int last) {
        std::vector<std::uint8_t> scratch(4 * width);
        for (int y = first; y < last; ++y) {
            const auto row = static_cast<std::size_t>(y);
            std::uint8_t* out = grays.data() + row * gray.bytesPerRow;
            const std::uint8_t* rgba = rows.rgba(y, scratch.data());
            if (rows.filledAlpha() != 0 && rgba != scratch.data())
                std::memcpy(scratch.data(), rgba, scratch.size());
            if (rows.filledAlpha() != 0) {
                kernels::setOpaque(scratch.data(), width);
                rgba = scratch.data();
            }
            kernels::grayOf(rgba, width, out, alphas.data() + row * width);
            std::memset(out + width, 0, gray.bytesPerRow - width);
        }
    });
    return CGImage::make(gray, std::move(grays)).withMask(CGImage::make(coverage, std::move(alphas)));
}

} // namespace

UIImage grayscale(const UIImage& image)
{
    const CGSize points = image.size();
    const std::optional<IntSize> size = wholePixels(points.width * image.scale(), points.height * image.scale());
    if (!image || !size)
        return {};
    const auto width = static_cast<std::size_t>(size->width);
    const CGImageLayout gray = byteLayout(*size, 3 * width, CGColorSpace::deviceGray(), CGImageAlphaInfo::None);
    const CGImageLayout coverage = byteLayout(*size, width, CGColorSpace::alphaOnly(), CGImageAlphaInfo::Only);
    CGImage result;
    if (image.cgImage().mask()) { // drawing stretches picture and mask each by itself
        const CGImage grays = drawnOver(gray, image.cgImage());
        const CGImage alphas = drawnOver(coverage, image.cgImage());
        if (grays && alphas)
            result = grays.withMask(alphas);
    } else if (const auto rows = DrawnRows::make(image.cgImage(), *size)) {
        result = grayThroughCoverage(*rows, gray, coverage);
    }
    return result ? UIImage(std::move(result), image.scale(), image.imageOrientation()) : UIImage();
}

} // namespace lamina
