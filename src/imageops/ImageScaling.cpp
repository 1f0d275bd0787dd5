#include "imageops/DrawingSurface.h"
#include "imageops/ImageGeometry.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"

#include <cmath>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// Truncated; what is whole but for the last bits of a product counts as whole, as in `wholePixels`.
double whole(double points)
{
    return std::trunc(points + kPixelNoise);
}

CGSize fittedSize(CGSize own, CGSize size)
{
    CGSize fitted = own.width > own.height ? CGSize{size.width, size.width * own.height / own.width}
                                           : CGSize{size.height * own.width / own.height, size.height};
    // The longer side of the picture need not be the one that is short of room.
    if (whole(fitted.width) > size.width)
        fitted = {whole(size.width), size.width * own.height / own.width};
    if (whole(fitted.height) > size.height)
        fitted = {whole(size.height * own.width / own.height), whole(size.height)};
    return fitted;
}

CGSize coveringSize(CGSize own, CGSize size)
{
    const bool followsHeight = size.height / own.height > size.width / own.width;
    const CGSize covering = followsHeight ? CGSize{size.height * own.width / own.height, size.height}
                                          : CGSize{size.width, size.width * own.height / own.width};
    return {whole(covering.width), whole(covering.height)};
}

} // namespace

CGSize scaledSize(CGSize own, CGSize size, int mode)
{
    return mode == ScaleModeFit ? fittedSize(own, size) : mode == ScaleModeCover ? coveringSize(own, size) : size;
}

CGSize scaledSize(CGSize own, float factor)
{
    // 0.7 is a little less as a float, and 100 times that would lose a pixel: half a step of the float is no
    // difference.
    constexpr double kHalfStep = 0x1p-24;
    const double exact = static_cast<double>(factor) * (1 + kHalfStep);
    return {own.width * exact, own.height * exact};
}

UIImage scaleByFactor(const UIImage& image, float factor)
{
    return scaleToFillSize(image, scaledSize(image.size(), factor));
}

UIImage scaleToSize(const UIImage& image, CGSize size, int mode)
{
    if (!image || !isMeasurable(size))
        return {};
    return scaleToFillSize(image, scaledSize(image.size(), size, mode));
}

UIImage scaleToSize(const UIImage& image, CGSize size)
{
    return scaleToFillSize(image, size);
}

UIImage scaleToFillSize(const UIImage& image, CGSize size)
{
    if (!image || !isMeasurable(size))
        return {};
    std::optional<IntSize> target = wholePixels(size.width * image.scale(), size.height * image.scale());
    if (!target)
        return {};
    if (swapsSides(image.imageOrientation()))
        std::swap(target->width, target->height);
    const std::optional<DrawnRows> rows = DrawnRows::make(image.cgImage(), *target);
    std::optional<DrawingSurface> surface = rows ? rows->draw() : std::nullopt;
    return surface ? std::move(*surface).makePicture(image.scale(), image.imageOrientation()) : UIImage();
}

UIImage scaleToFitSize(const UIImage& image, CGSize size)
{
    return scaleToSize(image, size, ScaleModeFit);
}

UIImage scaleToCoverSize(const UIImage& image, CGSize size)
{
    return scaleToSize(image, size, ScaleModeCover);
}

} // namespace lamina
