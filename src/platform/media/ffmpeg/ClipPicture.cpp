#include "platform/media/ffmpeg/ClipPicture_p.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace lamina {

Turn Turn::ofTrack(const AVStream* stream)
{
    std::size_t size = 0;
    const std::uint8_t* data = av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    std::int32_t matrix[9];
    if (!data || size < sizeof matrix)
        return {};
    std::memcpy(matrix, data, sizeof matrix);
    // x' = a·x + c·y, y' = b·x + d·y, with y down
    const std::int64_t a = matrix[0];
    const std::int64_t b = matrix[1];
    const std::int64_t c = matrix[3];
    const std::int64_t d = matrix[4];
    if (std::llabs(a) + std::llabs(d) >= std::llabs(b) + std::llabs(c))
        return {false, a < 0, d < 0};
    return {true, b < 0, c < 0};
}

IntSize storedSize(AVFormatContext* container, AVStream* stream)
{
    const AVRational aspect = av_guess_sample_aspect_ratio(container, stream, nullptr);
    const double stretch = aspect.num > 0 && aspect.den > 0 ? av_q2d(aspect) : 1;
    constexpr double kMostStretch = 4; // more is a slip in the header
    const double width = stretch <= kMostStretch && stretch >= 1 / kMostStretch ? stream->codecpar->width * stretch
                                                                                : stream->codecpar->width;
    return {std::max(1, static_cast<int>(std::llround(width))), stream->codecpar->height};
}

IntSize shownSize(AVFormatContext* container, AVStream* stream)
{
    return Turn::ofTrack(stream).turned(storedSize(container, stream));
}

FrameConverter::FrameConverter(Turn turn, IntSize size)
    : m_turn(turn)
    , m_size(size)
    , m_scaler({.format = AV_PIX_FMT_RGBA, .size = turn.turned(size), .care = ScaledKind::Care::Exact})
{
    constexpr std::size_t kAlignment = 64; // of what the scaler writes at once, beyond the row's end too
    const IntSize stored = turn.turned(size);
    m_bytesPerRow = (4 * static_cast<std::size_t>(stored.width) / kAlignment + 2) * kAlignment;
    m_stored.resize(m_bytesPerRow * static_cast<std::size_t>(stored.height));
}

Outcome FrameConverter::convert(const AVFrame& frame, std::uint8_t* pixels)
{
    std::uint8_t* rows[4] = {m_stored.data(), nullptr, nullptr, nullptr};
    const int strides[4] = {static_cast<int>(m_bytesPerRow), 0, 0, 0};
    Outcome scaled = m_scaler.scale(frame, rows, strides);
    if (scaled)
        turnInto(pixels);
    return scaled;
}

void FrameConverter::turnInto(std::uint8_t* pixels) const
{
    const IntSize stored = m_turn.turned(m_size);
    const auto stride = static_cast<std::ptrdiff_t>(m_bytesPerRow);
    const std::ptrdiff_t column = m_turn.flipsColumns ? -4 : 4;
    const std::ptrdiff_t row = m_turn.flipsRows ? -stride : stride;
    const std::uint8_t* corner = m_stored.data() + (m_turn.flipsColumns ? 4 * (stored.width - 1) : 0) +
                                 (m_turn.flipsRows ? stride * (stored.height - 1) : 0);
    const std::ptrdiff_t right = m_turn.swaps ? row : column;
    const std::ptrdiff_t down = m_turn.swaps ? column : row;
    for (int y = 0; y < m_size.height; ++y) {
        const std::uint8_t* from = corner + y * down;
        for (int x = 0; x < m_size.width; ++x, from += right, pixels += 4) {
            std::memcpy(pixels, from, 4);
            pixels[3] = 255;
        }
    }
}

} // namespace lamina
