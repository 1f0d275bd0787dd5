#include "imageops/ImageGeometry.h"

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelConversion.h"
#include "platform/image/pixels/UIImage.h"

namespace lamina {

namespace {

/// Where `part` begins in `whole`: at its start, in its middle, or so that both end together.
enum class Anchor { Start, Middle, End };

double placed(Anchor anchor, double whole, double part)
{
    switch (anchor) {
    case Anchor::Start:
        return 0;
    case Anchor::Middle:
        return (whole - part) / 2;
    case Anchor::End:
        break;
    }
    return whole - part;
}

Anchor horizontalAnchor(int mode)
{
    switch (mode) {
    case CropModeTopCenter:
    case CropModeBottomCenter:
    case CropModeCenter:
        return Anchor::Middle;
    case CropModeTopRight:
    case CropModeBottomRight:
    case CropModeRightCenter:
        return Anchor::End;
    default:
        return Anchor::Start;
    }
}

Anchor verticalAnchor(int mode)
{
    switch (mode) {
    case CropModeLeftCenter:
    case CropModeRightCenter:
    case CropModeCenter:
        return Anchor::Middle;
    case CropModeBottomLeft:
    case CropModeBottomCenter:
    case CropModeBottomRight:
        return Anchor::End;
    default:
        return Anchor::Start;
    }
}

/// A picture whose parts can be had without a copy: no mask, and whole bytes in a pixel.
CGImage divisible(const CGImage& image)
{
    return image.mask() || image.bitsPerPixel() % 8 != 0 ? convertedToSRGB(image) : image;
}

/// The whole pixels that a rectangle touches; a product's last bits touch nothing.
IntRect touchedPixels(const CGRect& rect)
{
    const CGRect core = rect.insetBy(kPixelNoise, kPixelNoise);
    return core.isEmpty() ? IntRect{} : integralCover(core);
}

} // namespace

UIImage cropToSize(const UIImage& image, CGSize size, int mode)
{
    if (!image || !isMeasurable(size))
        return {};
    const CGSize whole = image.size();
    if (size.width > whole.width + kPixelNoise || size.height > whole.height + kPixelNoise)
        return {};
    const double scale = image.scale();
    CGRect part(placed(horizontalAnchor(mode), whole.width, size.width) * scale,
                placed(verticalAnchor(mode), whole.height, size.height) * scale, size.width * scale,
                size.height * scale);
    if (swapsSides(image.imageOrientation()))
        part = CGRect(part.minY(), part.minX(), part.size.height, part.size.width);
    const CGImage& stored = image.cgImage();
    const CGRect bounds(0, 0, stored.width(), stored.height());
    const CGRect inside = part.intersection(bounds);
    if (inside.isEmpty())
        return {};
    const CGImage source = divisible(stored);
    const CGImage cropped = source ? source.subImage(touchedPixels(inside)) : CGImage();
    return cropped ? UIImage(cropped, scale, image.imageOrientation()) : UIImage();
}

UIImage cropToSize(const UIImage& image, CGSize size)
{
    return cropToSize(image, size, CropModeTopLeft);
}

} // namespace lamina
