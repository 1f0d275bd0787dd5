#include "platform/media/ffmpeg/FrameTurning_p.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace lamina {

namespace {

struct Position {
    std::ptrdiff_t x = 0;
    std::ptrdiff_t y = 0;
};

/// Where the sample that is seen at a place is stored, in a plane of `width` and `height`.
Position storedAt(Position seen, std::ptrdiff_t width, std::ptrdiff_t height, const AVTrackTransform& transform)
{
    Position stored = seen;
    if (transform.quarters == 1)
        stored = {seen.y, height - 1 - seen.x};
    else if (transform.quarters == 2)
        stored = {width - 1 - seen.x, height - 1 - seen.y};
    else if (transform.quarters == 3)
        stored = {width - 1 - seen.y, seen.x};
    return transform.mirrors ? Position{width - 1 - stored.x, stored.y} : stored;
}

template <std::size_t Bytes>
void turnPlane(const AVFrame& from, AVFrame& to, int plane, const AVTrackTransform& transform)
{
    const int shift = plane == 0 ? 0 : 1;
    const std::ptrdiff_t width = from.width >> shift;
    const std::ptrdiff_t height = from.height >> shift;
    const auto offset = [&](Position seen) {
        const Position stored = storedAt(seen, width, height, transform);
        return stored.y * from.linesize[plane] + stored.x * static_cast<std::ptrdiff_t>(Bytes);
    };
    const std::ptrdiff_t corner = offset({0, 0});
    const std::ptrdiff_t right = offset({1, 0}) - corner;
    const std::ptrdiff_t down = offset({0, 1}) - corner;
    for (std::ptrdiff_t y = 0; y < to.height >> shift; ++y) {
        const std::uint8_t* source = from.data[plane] + corner + y * down;
        std::uint8_t* row = to.data[plane] + y * to.linesize[plane];
        for (std::ptrdiff_t x = 0; x < to.width >> shift; ++x)
            std::memcpy(row + x * static_cast<std::ptrdiff_t>(Bytes), source + x * right, Bytes);
    }
}

} // namespace

Frame turned(const AVFrame& frame, const AVTrackTransform& transform)
{
    Frame made(av_frame_alloc());
    if (!made)
        return {};
    made->format = frame.format;
    made->width = transform.swapsSides() ? frame.height : frame.width;
    made->height = transform.swapsSides() ? frame.width : frame.height;
    if (av_frame_get_buffer(made.get(), 0) < 0)
        return {};
    for (const AVBufferRef* buffer : made->buf) // vector code reads what lies between the rows, too
        if (buffer)
            std::memset(buffer->data, 0, buffer->size);
    turnPlane<1>(frame, *made, 0, transform);
    if (frame.format == AV_PIX_FMT_NV12) {
        turnPlane<2>(frame, *made, 1, transform);
        return made;
    }
    turnPlane<1>(frame, *made, 1, transform);
    turnPlane<1>(frame, *made, 2, transform);
    return made;
}

} // namespace lamina
