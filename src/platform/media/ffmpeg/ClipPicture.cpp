#include "platform/media/ffmpeg/ClipPicture_p.h"

#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/ClipSource_p.h"

extern "C" {
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace lamina {

namespace {

/// Untagged clips: the larger ones were made for high definition.
constexpr int kLinesOfHighDefinition = 720;

int coefficientsOf(AVColorSpace matrix, int lines)
{
    switch (matrix) {
    case AVCOL_SPC_BT709:
        return SWS_CS_ITU709;
    case AVCOL_SPC_FCC:
        return SWS_CS_FCC;
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
        return SWS_CS_ITU601;
    case AVCOL_SPC_SMPTE240M:
        return SWS_CS_SMPTE240M;
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
        return SWS_CS_BT2020;
    default:
        return lines >= kLinesOfHighDefinition ? SWS_CS_ITU709 : SWS_CS_ITU601;
    }
}

/// Formats that say by their names that they use the full range.
bool isFullRangeFormat(int format)
{
    return format == AV_PIX_FMT_YUVJ420P || format == AV_PIX_FMT_YUVJ422P || format == AV_PIX_FMT_YUVJ444P ||
           format == AV_PIX_FMT_YUVJ440P || format == AV_PIX_FMT_YUVJ411P;
}

} // namespace

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

IntSize shownSize(AVFormatContext* container, AVStream* stream)
{
    const AVRational aspect = av_guess_sample_aspect_ratio(container, stream, nullptr);
    const double stretch = aspect.num > 0 && aspect.den > 0 ? av_q2d(aspect) : 1;
    constexpr double kMostStretch = 4; // more is a slip in the header
    const double width = stretch <= kMostStretch && stretch >= 1 / kMostStretch ? stream->codecpar->width * stretch
                                                                                : stream->codecpar->width;
    const IntSize stored{std::max(1, static_cast<int>(std::llround(width))), stream->codecpar->height};
    return Turn::ofTrack(stream).turned(stored);
}

Scaler makeScaler(IntSize from, AVPixelFormat fromFormat, IntSize to, AVPixelFormat toFormat, bool centered)
{
    Scaler scaler(sws_alloc_context());
    if (!scaler)
        return {};
    const auto set = [&](const char* name, std::int64_t value) { av_opt_set_int(scaler.get(), name, value, 0); };
    set("srcw", from.width);
    set("srch", from.height);
    set("src_format", fromFormat);
    set("dstw", to.width);
    set("dsth", to.height);
    set("dst_format", toFormat);
    // Exact sums, the same on every processor, and no colour read for two columns at once.
    set("sws_flags", SWS_BICUBIC | SWS_ACCURATE_RND | SWS_BITEXACT | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP);
    constexpr int kCenter = 128; // in 1/256 of a column or row
    const auto place = [&](AVPixelFormat format, const char* column, const char* row) {
        const AVPixFmtDescriptor* kind = av_pix_fmt_desc_get(format);
        if (kind && kind->log2_chroma_w == 1)
            set(column, centered ? kCenter : 0);
        if (kind && kind->log2_chroma_h == 1)
            set(row, kCenter);
    };
    place(fromFormat, "src_h_chr_pos", "src_v_chr_pos");
    place(toFormat, "dst_h_chr_pos", "dst_v_chr_pos");
    if (sws_init_context(scaler.get(), nullptr, nullptr) < 0)
        return {};
    return scaler;
}

FrameConverter::Kind FrameConverter::kindOf(const AVFrame& frame)
{
    const bool full = frame.color_range == AVCOL_RANGE_JPEG || isFullRangeFormat(frame.format);
    return {{frame.width, frame.height}, frame.format, frame.colorspace, full, frame.chroma_location};
}

Outcome FrameConverter::prepare(const Kind& kind)
{
    const IntSize stored = m_turn.turned(m_size);
    m_kind = {};
    m_scaler = makeScaler(kind.size, static_cast<AVPixelFormat>(kind.format), stored, AV_PIX_FMT_RGBA,
                          kind.chroma == AVCHROMA_LOC_CENTER);
    if (!m_scaler)
        return Error{{}, cause::kClipDamaged};
    const int* matrix = sws_getCoefficients(coefficientsOf(kind.matrix, kind.size.height));
    constexpr int kUnchanged = 1 << 16;
    sws_setColorspaceDetails(m_scaler.get(), matrix, kind.fullRange ? 1 : 0, sws_getCoefficients(SWS_CS_DEFAULT), 1, 0,
                             kUnchanged, kUnchanged);
    constexpr std::size_t kAlignment = 64; // of what the scaler writes at once, beyond the row's end too
    m_bytesPerRow = (4 * static_cast<std::size_t>(stored.width) / kAlignment + 2) * kAlignment;
    m_stored.resize(m_bytesPerRow * static_cast<std::size_t>(stored.height));
    m_kind = kind;
    return success();
}

Outcome FrameConverter::convert(const AVFrame& frame, std::uint8_t* pixels)
{
    if (const Kind kind = kindOf(frame); !m_scaler || !(kind == m_kind)) {
        Outcome prepared = prepare(kind);
        if (!prepared)
            return prepared;
    }
    std::uint8_t* rows[4] = {m_stored.data(), nullptr, nullptr, nullptr};
    const int strides[4] = {static_cast<int>(m_bytesPerRow), 0, 0, 0};
    if (sws_scale(m_scaler.get(), frame.data, frame.linesize, 0, frame.height, rows, strides) < 0)
        return Error{{}, cause::kClipDamaged};
    turnInto(pixels);
    return success();
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
