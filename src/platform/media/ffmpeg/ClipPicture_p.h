#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lamina {

/// How stored rows must be read to be seen upright: quarters of a turn and mirrors. A shown pixel (X, Y) is the stored
/// one of column (swaps ? Y : X), counted from the right with `flipsColumns`, and of the row likewise.
struct Turn {
    bool swaps = false;
    bool flipsColumns = false;
    bool flipsRows = false;

    /// By the track's matrix; the nearest one where it turns by less than a quarter.
    static Turn ofTrack(const AVStream* stream);
    IntSize turned(IntSize size) const { return swaps ? IntSize{size.height, size.width} : size; }
};

/// The size in which a clip's frames are shown: in square pixels, upright. Empty when the track claims none.
IntSize shownSize(AVFormatContext* container, AVStream* stream);

/// Makes upright RGB of a track's frames, all in one size, whatever sizes and kinds the frames have.
class FrameConverter {
public:
    /// `size`: upright, in pixels.
    FrameConverter(Turn turn, IntSize size)
        : m_turn(turn)
        , m_size(size)
    {
    }

    IntSize size() const { return m_size; }
    /// Writes R G B 255, rows without padding, into 4 × width × height bytes.
    Outcome convert(const AVFrame& frame, std::uint8_t* pixels);

private:
    struct Kind {
        IntSize size;
        int format = -1;
        AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
        bool fullRange = false;
        AVChromaLocation chroma = AVCHROMA_LOC_UNSPECIFIED;
        bool operator==(const Kind&) const = default;
    };
    static Kind kindOf(const AVFrame& frame);
    Outcome prepare(const Kind& kind);
    void turnInto(std::uint8_t* pixels) const;

    Turn m_turn;
    IntSize m_size;
    Kind m_kind;
    Scaler m_scaler;
    std::vector<std::uint8_t> m_stored; ///< the frame as it is stored, in RGBA
    std::size_t m_bytesPerRow = 0;
};

/// A scaler between two pictures; null when memory is short or one of them is of an unknown kind. Chroma of halved
/// width stands over the left of its two columns unless `centered`.
Scaler makeScaler(IntSize from, AVPixelFormat fromFormat, IntSize to, AVPixelFormat toFormat, bool centered = false);

} // namespace lamina
