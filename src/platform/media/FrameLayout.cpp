#include "platform/media/FrameLayout_p.h"

#include "platform/image/drawing/Resampling.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelMoves.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace lamina {

namespace {

constexpr std::size_t kPixelBytes = 4;

IntSize turned(IntSize size, const AVTrackTransform& transform)
{
    return transform.swapsSides() ? IntSize{size.height, size.width} : size;
}

/// The largest size of this shape within `bounds`.
IntSize fitted(IntSize size, IntSize bounds)
{
    const double scale = std::min(double(bounds.width) / size.width, double(bounds.height) / size.height);
    const auto side = [&](int length) { return std::max(1, static_cast<int>(std::lround(length * scale))); };
    return {side(size.width), side(size.height)};
}

/// The pixels as a picture: blue stands where it says red, which is the same to who moves and mixes pixels.
CGImage pictureOf(const std::shared_ptr<CVPixelBuffer>& frame)
{
    const CVPixelBuffer::Plane& plane = frame->planes().front();
    const CGImageLayout layout{
        .width = frame->size().width, .height = frame->size().height, .bytesPerRow = plane.bytesPerRow};
    return CGImage::make(layout, std::shared_ptr<const std::uint8_t>(frame, plane.bytes), layout.byteCount());
}

/// Four bytes as they lie in memory.
std::uint32_t inMemory(std::array<std::uint8_t, kPixelBytes> bytes)
{
    return std::bit_cast<std::uint32_t>(bytes);
}

void fillBlack(const CVPixelBuffer::Plane& plane)
{
    const std::uint32_t black = inMemory({0, 0, 0, 255});
    for (int y = 0; y < plane.size.height; ++y) {
        std::uint8_t* row = plane.bytes + static_cast<std::size_t>(y) * plane.bytesPerRow;
        for (int x = 0; x < plane.size.width; ++x)
            std::memcpy(row + kPixelBytes * static_cast<std::size_t>(x), &black, kPixelBytes);
    }
}

} // namespace

std::shared_ptr<CVPixelBuffer> laidOut(const std::shared_ptr<CVPixelBuffer>& frame, const AVTrackTransform& transform,
                                       IntSize size)
{
    if (frame->size() == size && transform == AVTrackTransform{})
        return frame;
    if (size.width <= 0 || size.height <= 0)
        return nullptr;
    const IntSize seen = fitted(turned(frame->size(), transform), size);
    const IntSize stored = turned(seen, transform);
    CGImage picture = pictureOf(frame);
    if (stored != frame->size())
        picture = resampled(picture, stored);
    const std::shared_ptr<CVPixelBuffer> target = CVPixelBuffer::make(size, CVPixelFormat::BGRA);
    if (!picture || !target)
        return nullptr;
    const CVPixelBuffer::Plane& plane = target->planes().front();
    if (seen != size)
        fillBlack(plane);
    const auto left = static_cast<std::size_t>((size.width - seen.width) / 2);
    const auto top = static_cast<std::size_t>((size.height - seen.height) / 2);
    movePixels(picture, {.quarters = -transform.quarters, .mirrorX = transform.mirrors}, inMemory({0, 0, 0, 255}),
               plane.bytes + top * plane.bytesPerRow + kPixelBytes * left, plane.bytesPerRow);
    return target;
}

std::size_t bytesOf(const std::shared_ptr<CVPixelBuffer>& frame)
{
    if (!frame)
        return 0;
    if (frame->pixelFormat() == CVPixelFormat::AsDecoded) // 4:2:0, whose planes only its module knows
        return static_cast<std::size_t>(frame->size().width) * static_cast<std::size_t>(frame->size().height) * 3 / 2;
    std::size_t bytes = 0;
    for (const CVPixelBuffer::Plane& plane : frame->planes())
        bytes += plane.bytesPerRow * static_cast<std::size_t>(plane.size.height);
    return bytes;
}

} // namespace lamina
