#pragma once

#include "platform/base/Result.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/MovieFile_p.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace lamina {

/// The track of sound of a film: AAC of one or two channels, at the rate of what comes where AAC films use it, else 48
/// kHz.
class SoundTrack {
public:
    /// Before the file is begun. `source`: of what will come; what stands after `end`, in seconds, is cut.
    static Result<std::unique_ptr<SoundTrack>> add(MovieFile& file, const AVCodecParameters& source, double end);

    /// Takes samples that begin at `time`, in seconds. Small differences from where the sound stands are passed over; a
    /// larger gap becomes silence, and what lies before 0 or before where the sound stands is dropped.
    Outcome write(const AVFrame& frame, double time);
    /// Where the sound stands, in seconds.
    double time() const;
    /// Nothing comes any more.
    Outcome finish();

private:
    /// What the resampler was made for.
    struct Kind {
        int rate = 0;
        int format = -1;
        int channels = 0;
        bool operator==(const Kind&) const = default;
    };
    SoundTrack(MovieFile& file, double end)
        : m_file(file)
        , m_end(end)
    {
    }
    Outcome open(const AVCodecParameters& source);
    Outcome follow(const AVFrame& frame);
    Outcome skipTo(std::int64_t position);
    Outcome queueSilence(int samples);
    Outcome resample(const AVFrame* frame);
    Outcome encodeWhole();
    Outcome encode(int samples, int silence);
    Outcome write(const AVFrame* frame);
    std::int64_t end() const;
    int queued() const { return av_audio_fifo_size(m_queue.get()); }

    MovieFile& m_file;
    double m_end;
    CodecContext m_encoder;
    AVStream* m_track = nullptr;
    Kind m_kind;
    Resampler m_resampler;
    std::vector<float> m_converted[2]; ///< a channel each
    SampleQueue m_queue;
    Frame m_frame;
    std::int64_t m_position = 0; ///< of the queue's first sample
    std::int64_t m_silence = 0;  ///< samples that filled gaps
};

} // namespace lamina
