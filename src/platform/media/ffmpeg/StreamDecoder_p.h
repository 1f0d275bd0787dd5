#pragma once

#include "platform/base/Result.h"
#include "platform/media/ffmpeg/ClipSource_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"

#include <functional>

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
    /// After the end: an error when the track was damaged or gave nothing.
    Outcome outcome() const;
    /// How long a frame lasts where it doesn't tell, in seconds.
    double frameDuration(const AVFrame& frame) const;

private:
    StreamDecoder(ClipSource& source, AVStream* stream, CodecContext context, Frame frame);
    Outcome receive(const FrameUser& use);
    double timeOf(const AVFrame& frame);

    ClipSource* m_source;
    AVStream* m_stream;
    CodecContext m_context;
    Frame m_frame;
    double m_next = 0; ///< when the frame after the last one begins, in seconds of the container
    long m_frames = 0;
    long m_failures = 0;
};

} // namespace lamina
