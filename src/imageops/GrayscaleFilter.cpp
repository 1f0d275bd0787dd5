#include "imageops/DrawingSurface.h"
#include "imageops/ImageFilters.h"
#include "platform/image/CGContext.h"

namespace lamina {

namespace {

/// The stored pixels stretched over a bitmap of one component.
CGImage drawnOver(IntSize size, std::size_t bytesPerRow, const CGColorSpace& space, CGImageAlphaInfo alpha,
                  const CGImage& image)
{
    std::optional<CGContext> context =
        CGContext::bitmap(size.width, size.height, bytesPerRow, space, bitmapInfo(alpha));
    if (!context)
        return {};
    context->setShouldAntialias(false);
    context->setInterpolationQuality(CGContext::Interpolation::High);
    context->drawImage(image, CGRect(0, 0, size.width, size.height));
    return context->makeImage();
}

} // namespace

UIImage grayscale(const UIImage& image)
{
    const CGSize points = image.size();
    const std::optional<IntSize> size = wholePixels(points.width * image.scale(), points.height * image.scale());
    if (!image || !size)
        return {};
    const auto width = static_cast<std::size_t>(size->width);
    const CGImage gray =
        drawnOver(*size, 3 * width, CGColorSpace::deviceGray(), CGImageAlphaInfo::None, image.cgImage());
    const CGImage coverage =
        drawnOver(*size, width, CGColorSpace::alphaOnly(), CGImageAlphaInfo::Only, image.cgImage());
    if (!gray || !coverage)
        return {};
    return UIImage(gray.withMask(coverage), image.scale(), image.imageOrientation());
}

} // namespace lamina
