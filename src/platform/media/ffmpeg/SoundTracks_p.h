#pragma once

#include "platform/base/Result.h"
#include "platform/media/AVAssetWriter.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/MovieFile_p.h"
#include "platform/media/ffmpeg/MovieTrack_p.h"
#include "platform/media/ffmpeg/SoundTrack_p.h"

#include <cstdint>
#include <memory>
#include <utility>

namespace lamina {

/// Sound that comes as numbers.
class NumbersTrack final : public MovieTrack {
public:
    /// Before the file is begun. `realTime`: the times are a clock's, and waver.
    static Result<std::unique_ptr<MovieTrack>> add(MovieFile& file, const AVAudioSettings& settings, bool realTime);

    bool isDescribed() const override { return true; }
    Outcome describeEmpty() override { return success(); }
    Outcome write(const CMSampleBuffer& piece) override;
    Outcome finish() override { return m_track->finish(); }

private:
    explicit NumbersTrack(std::unique_ptr<SoundTrack> track)
        : m_track(std::move(track))
    {
    }

    std::unique_ptr<SoundTrack> m_track;
};

/// Sound that comes as packets and goes on as it is.
class StoredTrack final : public MovieTrack {
public:
    /// Before the file is begun.
    static Result<std::unique_ptr<MovieTrack>> add(MovieFile& file, const AVCodecParameters& parameters);

    bool isDescribed() const override { return true; }
    Outcome describeEmpty() override { return success(); }
    Outcome write(const CMSampleBuffer& piece) override;
    Outcome finish() override { return success(); }

private:
    StoredTrack(MovieFile& file, AVStream* track, AVRational unit)
        : m_file(file)
        , m_track(track)
        , m_unit(unit)
    {
    }

    MovieFile& m_file;
    AVStream* m_track;
    AVRational m_unit;
    std::int64_t m_last = INT64_MIN;
};

} // namespace lamina
