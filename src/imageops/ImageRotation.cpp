#include "imageops/Angles_p.h"
#include "imageops/DrawingSurface.h"
#include "imageops/ImageGeometry.h"
#include "imageops/MovedPicture_p.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelMoves.h"
#include "platform/image/pixels/UIImage.h"

#include "platform/image/drawing/CGContext.h"

#include <cmath>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// Mirrors first, then a turn counter-clockwise.
struct Turn {
    Angle angle;
    bool mirrorX = false;
    bool mirrorY = false;
};

/// The stored pixels turned about the middle of a surface.
CGImage drawnTurned(const CGImage& image, const Turn& turn, IntSize surface)
{
    std::optional<CGContext> context = CGContext::bitmap(surface.width, surface.height, 0, CGColorSpace::deviceRGB(),
                                                         bitmapInfo(CGImageAlphaInfo::PremultipliedFirst));
    if (!context)
        return {};
    const Angle& angle = turn.angle;
    const double width = image.width();
    const double height = image.height();
    context->translateCTM(surface.width / 2.0, surface.height / 2.0);
    context->concatCTM({angle.cosine, angle.sine, -angle.sine, angle.cosine, 0, 0}); // exact for quarters
    context->scaleCTM(turn.mirrorX ? -1 : 1, turn.mirrorY ? -1 : 1);
    context->drawImage(image, CGRect(-width / 2, -height / 2, width, height));
    return context->makeImage();
}

/// Whole pixels moved; what is not four bytes of RGB, or has a mask, is drawn first.
CGImage moved(const CGImage& image, const PixelMove& move)
{
    if (!wholePixels(image.width(), image.height()))
        return {};
    if (canMovePicture(image))
        return movedPicture(image, move);
    const std::optional<DrawnRows> rows = DrawnRows::make(image, image.size(), true);
    std::optional<DrawingSurface> surface = rows ? rows->draw() : std::nullopt;
    const CGImage drawn = surface ? std::move(*surface).makeImage() : CGImage();
    return drawn ? movedPicture(drawn, move) : CGImage();
}

CGImage turned(const CGImage& image, const Turn& turn)
{
    if (turn.angle.quarters)
        return moved(image, {*turn.angle.quarters, turn.mirrorX, turn.mirrorY});
    const double sine = std::abs(turn.angle.sine);
    const double cosine = std::abs(turn.angle.cosine);
    const double width = image.width();
    const double height = image.height();
    const std::optional<IntSize> box = wholePixels(width * cosine + height * sine, width * sine + height * cosine);
    return box ? drawnTurned(image, turn, *box) : CGImage();
}

/// True when the turned picture covers its own frame.
bool fillsItsFrame(const CGImage& image, int quarters)
{
    return quarters % 2 == 0 || image.width() == image.height();
}

UIImage like(const UIImage& source, CGImage pixels)
{
    return pixels ? UIImage(std::move(pixels), source.scale(), source.imageOrientation()) : UIImage();
}

} // namespace

UIImage rotateInRadians(const UIImage& image, float angle, bool flipOverHorizontalAxis, bool verticalAxis)
{
    const std::optional<Angle> turn = Angle::make(angle);
    if (!image || !turn)
        return {};
    return like(image, turned(image.cgImage(), {*turn, flipOverHorizontalAxis, verticalAxis}));
}

UIImage rotateInRadians(const UIImage& image, float angle)
{
    return rotateInRadians(image, angle, false, false);
}

UIImage rotateInDegrees(const UIImage& image, float angle)
{
    return rotateInRadians(image, radiansOf(angle));
}

UIImage verticalFlip(const UIImage& image)
{
    return rotateInRadians(image, 0, false, true);
}

UIImage horizontalFlip(const UIImage& image)
{
    return rotateInRadians(image, 0, true, false);
}

UIImage rotateImagePixelsInRadians(const UIImage& image, float angle)
{
    const std::optional<Angle> turn = Angle::make(angle);
    if (!image || !turn)
        return {};
    const CGImage& pixels = image.cgImage();
    const std::optional<IntSize> frame = wholePixels(pixels.width(), pixels.height());
    if (!frame)
        return {};
    if (turn->quarters && fillsItsFrame(pixels, *turn->quarters))
        return like(image, moved(pixels, {*turn->quarters}));
    return like(image, drawnTurned(pixels, {*turn}, *frame));
}

UIImage rotateImagePixelsInDegrees(const UIImage& image, float angle)
{
    return rotateImagePixelsInRadians(image, radiansOf(angle));
}

} // namespace lamina
