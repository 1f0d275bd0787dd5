#include "imageops/DrawingSurface.h"
#include "imageops/ImageGeometry.h"

#include <cmath>
#include <utility>

namespace lamina {

namespace {

bool isUsable(const UIImage& image, CGSize size)
{
    return image && std::isfinite(size.width) && std::isfinite(size.height) && size.width > 0 && size.height > 0;
}

} // namespace

UIImage scaleByFactor(const UIImage& image, float factor)
{
    const CGSize size = image.size();
    return scaleToFillSize(image, {size.width * factor, size.height * factor});
}

UIImage scaleToSize(const UIImage& image, CGSize size, int mode)
{
    switch (mode) {
    case ScaleModeFit:
        return scaleToFitSize(image, size);
    case ScaleModeCover:
        return scaleToCoverSize(image, size);
    default:
        return scaleToFillSize(image, size);
    }
}

UIImage scaleToSize(const UIImage& image, CGSize size)
{
    return scaleToFillSize(image, size);
}

UIImage scaleToFillSize(const UIImage& image, CGSize size)
{
    if (!isUsable(image, size))
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
    if (!isUsable(image, size))
        return {};
    const CGSize own = image.size();
    CGSize fitted = own.width > own.height ? CGSize{size.width, size.width * own.height / own.width}
                                           : CGSize{size.height * own.width / own.height, size.height};
    // The longer side of the picture need not be the one that is short of room.
    if (std::trunc(fitted.width) > size.width)
        fitted = {std::trunc(size.width), size.width * own.height / own.width};
    if (std::trunc(fitted.height) > size.height)
        fitted = {std::trunc(size.height * own.width / own.height), std::trunc(size.height)};
    return scaleToFillSize(image, fitted);
}

UIImage scaleToCoverSize(const UIImage& image, CGSize size)
{
    if (!isUsable(image, size))
        return {};
    const CGSize own = image.size();
    const bool followsHeight = size.height / own.height > size.width / own.width;
    const CGSize covering = followsHeight ? CGSize{size.height * own.width / own.height, size.height}
                                          : CGSize{size.width, size.width * own.height / own.width};
    return scaleToFillSize(image, {std::trunc(covering.width), std::trunc(covering.height)});
}

} // namespace lamina
