#include "platform/media/ffmpeg/FrameScaling_p.h"

#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/ClipSource_p.h"

extern "C" {
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
}

namespace lamina {

namespace {

/// Untagged clips: the larger ones were made for high definition.
constexpr int kLinesOfHighDefinition = 720;

int coefficientsOf(YCbCrMatrix matrix)
{
    switch (matrix) {
    case YCbCrMatrix::ITU_R_709_2:
        return SWS_CS_ITU709;
    case YCbCrMatrix::SMPTE_240M_1995:
        return SWS_CS_SMPTE240M;
    case YCbCrMatrix::ITU_R_2020:
        return SWS_CS_BT2020;
    default:
        return SWS_CS_ITU601;
    }
}

/// What a scaler is made of.
struct ScalerSetting {
    IntSize from;
    AVPixelFormat fromFormat;
    bool fromFullRange = false;
    IntSize to;
    AVPixelFormat toFormat;
    bool toFullRange = false;
    int flags = 0;
    bool placesChroma = true; ///< over the left of two columns, or between them
    bool centered = false;
};

Scaler scalerOf(const ScalerSetting& setting)
{
    Scaler scaler(sws_alloc_context());
    if (!scaler)
        return {};
    const auto set = [&](const char* name, std::int64_t value) { av_opt_set_int(scaler.get(), name, value, 0); };
    set("srcw", setting.from.width);
    set("srch", setting.from.height);
    set("src_format", setting.fromFormat);
    set("src_range", setting.fromFullRange ? 1 : 0);
    set("dstw", setting.to.width);
    set("dsth", setting.to.height);
    set("dst_format", setting.toFormat);
    set("dst_range", setting.toFullRange ? 1 : 0);
    set("sws_flags", setting.flags);
    constexpr int kCenter = 128; // in 1/256 of a column or row
    const auto place = [&](AVPixelFormat format, const char* column, const char* row) {
        const AVPixFmtDescriptor* kind = av_pix_fmt_desc_get(format);
        if (kind && kind->log2_chroma_w == 1)
            set(column, setting.centered ? kCenter : 0);
        if (kind && kind->log2_chroma_h == 1)
            set(row, kCenter);
    };
    if (setting.placesChroma) {
        place(setting.fromFormat, "src_h_chr_pos", "src_v_chr_pos");
        place(setting.toFormat, "dst_h_chr_pos", "dst_v_chr_pos");
    }
    if (sws_init_context(scaler.get(), nullptr, nullptr) < 0)
        return {};
    return scaler;
}

// Exact sums, the same on every processor, and no colour read for two columns at once.
constexpr int kExact = SWS_BICUBIC | SWS_ACCURATE_RND | SWS_BITEXACT | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP;

} // namespace

YCbCrMatrix matrixOf(const AVFrame& frame)
{
    switch (frame.colorspace) {
    case AVCOL_SPC_BT709:
        return YCbCrMatrix::ITU_R_709_2;
    case AVCOL_SPC_FCC: // within a thousandth of BT.601
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
        return YCbCrMatrix::ITU_R_601_4;
    case AVCOL_SPC_SMPTE240M:
        return YCbCrMatrix::SMPTE_240M_1995;
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
        return YCbCrMatrix::ITU_R_2020;
    default:
        return frame.height >= kLinesOfHighDefinition ? YCbCrMatrix::ITU_R_709_2 : YCbCrMatrix::ITU_R_601_4;
    }
}

AVColorSpace colorSpaceOf(YCbCrMatrix matrix)
{
    switch (matrix) {
    case YCbCrMatrix::ITU_R_709_2:
        return AVCOL_SPC_BT709;
    case YCbCrMatrix::SMPTE_240M_1995:
        return AVCOL_SPC_SMPTE240M;
    case YCbCrMatrix::ITU_R_2020:
        return AVCOL_SPC_BT2020_NCL;
    default:
        return AVCOL_SPC_SMPTE170M;
    }
}

bool isFullRange(int format, AVColorRange range)
{
    return range == AVCOL_RANGE_JPEG || format == AV_PIX_FMT_YUVJ420P || format == AV_PIX_FMT_YUVJ422P ||
           format == AV_PIX_FMT_YUVJ444P || format == AV_PIX_FMT_YUVJ440P || format == AV_PIX_FMT_YUVJ411P;
}

bool isFullRange(const AVFrame& frame)
{
    return isFullRange(frame.format, frame.color_range);
}

Scaler makeScaler(IntSize from, AVPixelFormat fromFormat, IntSize to, AVPixelFormat toFormat, bool centered)
{
    return scalerOf({.from = from,
                     .fromFormat = fromFormat,
                     .to = to,
                     .toFormat = toFormat,
                     .flags = kExact,
                     .centered = centered});
}

FrameScaler::Kind FrameScaler::kindOf(const AVFrame& frame)
{
    return {{frame.width, frame.height}, frame.format, matrixOf(frame), isFullRange(frame), frame.chroma_location};
}

Outcome FrameScaler::prepare(const Kind& kind)
{
    const bool exact = m_wanted.care == ScaledKind::Care::Exact;
    m_kind = {};
    m_scaler = scalerOf({.from = kind.size,
                         .fromFormat = static_cast<AVPixelFormat>(kind.format),
                         .fromFullRange = kind.fullRange,
                         .to = m_wanted.size,
                         .toFormat = m_wanted.format,
                         .toFullRange = m_wanted.fullRange,
                         .flags = exact ? kExact : SWS_BICUBIC,
                         .placesChroma = exact,
                         .centered = kind.chroma == AVCHROMA_LOC_CENTER});
    if (!m_scaler)
        return Error{{}, cause::kClipDamaged};
    const int* matrix = sws_getCoefficients(coefficientsOf(kind.matrix));
    constexpr int kUnchanged = 1 << 16;
    sws_setColorspaceDetails(m_scaler.get(), matrix, kind.fullRange ? 1 : 0, matrix, m_wanted.fullRange ? 1 : 0, 0,
                             kUnchanged, kUnchanged);
    m_kind = kind;
    return success();
}

Outcome FrameScaler::scale(const AVFrame& frame, std::uint8_t* const planes[4], const int strides[4])
{
    if (const Kind kind = kindOf(frame); !m_scaler || !(kind == m_kind)) {
        Outcome prepared = prepare(kind);
        if (!prepared)
            return prepared;
    }
    if (sws_scale(m_scaler.get(), frame.data, frame.linesize, 0, frame.height, planes, strides) < 0)
        return Error{{}, cause::kClipDamaged};
    return success();
}

} // namespace lamina
