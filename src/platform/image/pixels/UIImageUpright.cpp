#include "platform/base/Cancelling.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelConversion.h"
#include "platform/image/pixels/PixelMoves.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/image/pixels/UprightPicture.h"

#include <atomic>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

PixelMove uprightMove(UIImageOrientation orientation)
{
    switch (orientation) {
    case UIImageOrientation::Up:
        break;
    case UIImageOrientation::Down:
        return {2};
    case UIImageOrientation::Left:
        return {1};
    case UIImageOrientation::Right:
        return {3};
    case UIImageOrientation::UpMirrored:
        return {0, true};
    case UIImageOrientation::DownMirrored:
        return {2, true};
    case UIImageOrientation::LeftMirrored:
        return {1, true};
    case UIImageOrientation::RightMirrored:
        return {3, true};
    }
    return {};
}

CGImage turned(const CGImage& source, UIImageOrientation orientation, const std::atomic<bool>* cancelled)
{
    // Pixels smaller than a byte, or of a rare size, get four bytes on the way.
    const CGImage image = canMovePixels(source.bitsPerPixel()) ? source : convertedToSRGB(source);
    if (!image)
        return {};
    CGImageLayout layout = image.layout();
    if (swapsSides(orientation))
        std::swap(layout.width, layout.height);
    const auto pixelSize = static_cast<std::size_t>(layout.bitsPerPixel / 8);
    layout.bytesPerRow = pixelSize * static_cast<std::size_t>(layout.width);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    if (!buffer)
        return {};
    movePixels(image, uprightMove(orientation), 0, buffer.data(), layout.bytesPerRow, cancelled);
    if (isCancelled(cancelled))
        return {};
    return CGImage::make(layout, std::move(buffer));
}

} // namespace

UIImage upright(const UIImage& picture, const std::atomic<bool>* cancelled)
{
    const CGImage& stored = picture.cgImage();
    const UIImageOrientation orientation = picture.imageOrientation();
    if (!stored || orientation == UIImageOrientation::Up)
        return picture;
    CGImage image = turned(stored, orientation, cancelled);
    if (const CGImage* mask = stored.mask(); mask && image) {
        if (!canMovePixels(stored.bitsPerPixel())) // the conversion has applied it
            return UIImage(image, picture.scale());
        const bool movable = canMovePixels(mask->bitsPerPixel());
        const CGImage turnedMask = turned(movable ? *mask : coverageOfMask(*mask), orientation, cancelled);
        if (!turnedMask)
            return {};
        image = image.withMask(turnedMask);
    }
    return image ? UIImage(image, picture.scale()) : UIImage();
}

UIImage UIImage::upright() const
{
    return lamina::upright(*this, nullptr);
}

} // namespace lamina
