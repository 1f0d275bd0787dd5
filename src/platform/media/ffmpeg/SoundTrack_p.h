#pragma once

#include "platform/base/Result.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/MovieFile_p.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace lamina {

namespace cause {
inline constexpr const char* kNoAAC = "the FFmpeg that is installed can't write AAC";
} // namespace cause

struct SoundSettings {
    int rate = 48'000; ///< the nearest that AAC knows is taken
    int channels = 2;
    int bitsPerSecond = 160'000;
    double slip = 0;                                      ///< seconds; by so much the times that are told may be wrong
    double end = std::numeric_limits<double>::infinity(); ///< seconds; what stands after it is cut

    /// For a film of a clip's sound: one or two channels, at its rate where AAC films use it, else 48 kHz.
    static SoundSettings of(const AVCodecParameters& source);
};

/// A track of sound: AAC. Where it stands is counted in samples.
class SoundTrack {
public:
    /// Before the file is begun. Into `reserved` where that is not null.
    static Result<std::unique_ptr<SoundTrack>> add(MovieFile& file, const SoundSettings& settings,
                                                   AVStream* reserved = nullptr);

    /// Takes samples that begin at `time`, in seconds. Slips from where the sound stands are passed over; a larger gap
    /// becomes silence, and what lies before 0 or before where the sound stands is cut.
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
    SoundTrack(MovieFile& file, const SoundSettings& settings)
        : m_file(file)
        , m_settings(settings)
    {
    }
    Outcome open(AVStream* reserved);
    Outcome follow(const AVFrame& frame);
    Outcome flush();
    Outcome skipTo(std::int64_t position);
    Outcome leaveGap(std::int64_t position);
    Outcome queueSilence(int samples);
    Outcome resample(const std::uint8_t** samples, int count);
    Outcome resampleFrom(const AVFrame& frame, int first);
    std::vector<void*> planes(int samples);
    Outcome encodeWhole();
    Outcome encode(int samples, int silence);
    Outcome write(const AVFrame* frame);
    std::int64_t end() const;
    std::int64_t stands() const;
    int queued() const { return av_audio_fifo_size(m_queue.get()); }

    MovieFile& m_file;
    const SoundSettings m_settings;
    CodecContext m_encoder;
    AVStream* m_track = nullptr;
    Kind m_kind;
    Resampler m_resampler;
    std::vector<std::vector<float>> m_converted; ///< a channel each
    SampleQueue m_queue;
    Frame m_frame;
    std::int64_t m_position = 0; ///< of the queue's first sample
    std::int64_t m_silence = 0;  ///< samples that filled gaps
};

} // namespace lamina
