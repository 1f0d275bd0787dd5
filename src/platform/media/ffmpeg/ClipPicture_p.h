#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/FrameScaling_p.h"

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

/// The same with the rows as they are stored.
IntSize storedSize(AVFormatContext* container, AVStream* stream);

/// Makes upright RGB of a track's frames, all in one size, whatever sizes and kinds the frames have.
class FrameConverter {
public:
    /// `size`: upright, in pixels.
    FrameConverter(Turn turn, IntSize size);

    IntSize size() const { return m_size; }
    /// Writes R G B 255, rows without padding, into 4 × width × height bytes.
    Outcome convert(const AVFrame& frame, std::uint8_t* pixels);

private:
    void turnInto(std::uint8_t* pixels) const;

    Turn m_turn;
    IntSize m_size;
    FrameScaler m_scaler;
    std::size_t m_bytesPerRow;
    std::vector<std::uint8_t> m_stored; ///< the frame as it is stored, in RGBA
};

} // namespace lamina
