#pragma once

#include "platform/base/Result.h"
#include "platform/media/ffmpeg/ClipSource_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace lamina {

/// What is done with a decoded frame and its time in seconds, from the first frame of the picture; an error ends the
/// work.
using FrameUser = std::function<Outcome(const AVFrame& frame, double time)>;

/// Decodes one track, and gives every frame a time: where packets tell none, a frame follows the one before.
class StreamDecoder {
public:
    /// `stream` and `source` outlive it. `threads`: the most that decode at once.
    static Result<StreamDecoder> open(ClipSource& source, AVStream* stream, int threads);

    /// Decodes a packet, or, for null, what is left at the end. Packets that nothing can be made of are passed over;
    /// more of them than frames mean a damaged clip, which `outcome` tells at the end.
    Outcome decode(const AVPacket* packet, const FrameUser& use);
    /// The next frame of a source that only this decoder reads; null at the end. Where reading ends in an error, what
    /// could be decoded comes before it.
    Result<Frame> next();
    /// When the last frame begins, by the clock of the stream.
    std::int64_t ticks() const { return m_ticks; }
    /// Forgets what it has read, after a search in the source.
    void restart();
    /// Whether more went wrong than could be decoded.
    bool isDamaged() const { return m_failures > m_frames; }
    /// After the end: an error when the track was damaged or gave nothing.
    Outcome outcome() const;
    /// How long a frame lasts where it doesn't tell, in seconds.
    double frameDuration(const AVFrame& frame) const;

private:
    StreamDecoder(ClipSource& source, AVStream* stream, CodecContext context, Frame frame, Packet packet);
    enum class Received { One, Nothing, End };
    Outcome receive(const FrameUser& use);
    Result<Received> receiveOne();
    Outcome feed();
    void noteTime();
    double seconds(std::int64_t ticks) const;

    ClipSource* m_source;
    AVStream* m_stream;
    CodecContext m_context;
    Frame m_frame;
    Packet m_packet;
    bool m_drains = false;
    std::optional<Error> m_readingError;
    std::int64_t m_ticks = 0;
    double m_shift = 0;     ///< what is added to the stream's clock, in seconds
    bool m_follows = false; ///< a frame came before
    double m_next = 0;      ///< when the frame after the last one begins, in seconds of the container
    long m_frames = 0;
    long m_failures = 0;
};

} // namespace lamina
