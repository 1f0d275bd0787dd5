#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/CVPixelBuffer.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"

#include <cstdint>

namespace lamina {

/// By which matrix a frame's colours were made: as tagged; untagged BT.709 from 720 lines on, BT.601 below.
YCbCrMatrix matrixOf(const AVFrame& frame);
AVColorSpace colorSpaceOf(YCbCrMatrix matrix);
/// Whether its numbers use all of their range: as tagged, or by the format's name.
bool isFullRange(int format, AVColorRange range);
bool isFullRange(const AVFrame& frame);

/// How frames are wanted.
struct ScaledKind {
    /// `Exact`: for one picture; `Fast`: for movies, as FFmpeg's own programs convert them. It differs where colours
    /// meet: chroma is read for two columns at once.
    enum class Care { Exact, Fast };

    AVPixelFormat format = AV_PIX_FMT_NONE;
    IntSize size;
    bool fullRange = true;
    Care care = Care::Fast;
};

/// Makes one kind of frame of others, whatever sizes and kinds they have. The matrix of what has one stays the frame's.
class FrameScaler {
public:
    explicit FrameScaler(const ScaledKind& kind)
        : m_wanted(kind)
    {
    }

    const ScaledKind& kind() const { return m_wanted; }
    /// Writes into planes whose rows, of the exact kind, have room for 64 bytes more.
    Outcome scale(const AVFrame& frame, std::uint8_t* const planes[4], const int strides[4]);

private:
    struct Kind {
        IntSize size;
        int format = -1;
        YCbCrMatrix matrix = YCbCrMatrix::None;
        bool fullRange = false;
        AVChromaLocation chroma = AVCHROMA_LOC_UNSPECIFIED;
        bool operator==(const Kind&) const = default;
    };
    static Kind kindOf(const AVFrame& frame);
    Outcome prepare(const Kind& kind);

    ScaledKind m_wanted;
    Kind m_kind;
    Scaler m_scaler;
};

/// A scaler between two pictures; null when memory is short or one of them is of an unknown kind. Chroma of halved
/// width stands over the left of its two columns unless `centered`.
Scaler makeScaler(IntSize from, AVPixelFormat fromFormat, IntSize to, AVPixelFormat toFormat, bool centered = false);

} // namespace lamina
