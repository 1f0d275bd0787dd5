#include "platform/base/Causes.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/MovieWriting_p.h"
#include "platform/media/ffmpeg/ClipSource_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/FilmWriting_p.h"
#include "platform/media/ffmpeg/FrameTrack_p.h"
#include "platform/media/ffmpeg/H264Encoder_p.h"
#include "platform/media/ffmpeg/MovieFile_p.h"
#include "platform/media/ffmpeg/MovieTrack_p.h"
#include "platform/media/ffmpeg/PlainNumbers_p.h"
#include "platform/media/ffmpeg/SoundTracks_p.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// So many packets of one track wait for the first piece of another; then the movie is begun without it, unless it is a
/// conversion and the piece may still come.
constexpr std::size_t kMostWaitingPackets = 500;

struct FreeParameters {
    void operator()(AVCodecParameters* parameters) const { avcodec_parameters_free(&parameters); }
};
using Parameters = std::shared_ptr<AVCodecParameters>;

/// Nothing is thrown at the program, which may have been built otherwise.
template <class Work>
Outcome guarded(const Work& work)
{
    const PlainNumbers plain;
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return Error{{}, cause::kNoMemory};
    }
}

struct FreeContainer {
    void operator()(AVFormatContext* container) const { avformat_free_context(container); }
};

/// Whether a container holds sound of such a kind: muxers have rules of their own besides their tables, so that one is
/// begun in memory.
bool canHold(const char* container, const AVCodecParameters& parameters)
{
    AVFormatContext* made = nullptr;
    avformat_alloc_output_context2(&made, nullptr, container, nullptr);
    const std::unique_ptr<AVFormatContext, FreeContainer> trial(made);
    AVStream* track = trial ? avformat_new_stream(trial.get(), nullptr) : nullptr;
    if (!track || avformat_query_codec(trial->oformat, parameters.codec_id, FF_COMPLIANCE_NORMAL) == 0 ||
        avcodec_parameters_copy(track->codecpar, &parameters) < 0 || avio_open_dyn_buf(&trial->pb) < 0)
        return false;
    track->codecpar->codec_tag = 0;
    track->time_base = {1, std::max(1, parameters.sample_rate)};
    const bool holds = avformat_write_header(trial.get(), nullptr) >= 0;
    std::uint8_t* bytes = nullptr;
    avio_close_dyn_buf(trial->pb, &bytes);
    av_free(bytes);
    return holds;
}

class MovieEncoding final : public MovieWriting {
public:
    explicit MovieEncoding(const char* container)
        : m_containerName(container)
    {
    }

    Outcome addVideo(const AVVideoSettings& settings) override
    {
        constexpr int kLongestSide = 16'384;
        const auto [width, height] = settings.size;
        if (width < 1 || height < 1 || width > kLongestSide || height > kLongestSide)
            return Error{{}, "a movie's sides are from 1 to 16384"};
        m_makers.push_back([settings](MovieFile& file, const TrackKind& kind) {
            return FrameTrack::add(file, settings, kind.transform);
        });
        return success();
    }

    Outcome addAudio(const AVAudioSettings& settings) override
    {
        if (!avcodec_find_encoder_by_name("aac"))
            return Error{{}, cause::kNoAAC};
        m_makers.push_back([settings](MovieFile& file, const TrackKind& kind) {
            return NumbersTrack::add(file, settings, kind.realTime);
        });
        return success();
    }

    Outcome addStoredAudio(const ClipFile& clip) override
    {
        return guarded([&]() -> Outcome {
            const Result<std::unique_ptr<ClipSource>> source = ClipSource::open(clip, ClipSource::Tracks::Sound);
            if (!source)
                return source.error();
            const AVCodecParameters& stored = *(*source)->sound()->codecpar;
            if (!canHold(m_containerName, stored))
                return Error{{},
                             std::string("sound of the codec ") + avcodec_get_name(stored.codec_id) +
                                 " can't be held by this type of movie"};
            const Parameters parameters(avcodec_parameters_alloc(), FreeParameters());
            if (!parameters || avcodec_parameters_copy(parameters.get(), &stored) < 0)
                return Error{{}, cause::kNoMemory};
            m_makers.push_back(
                [parameters](MovieFile& file, const TrackKind&) { return StoredTrack::add(file, *parameters); });
            return success();
        });
    }

    Outcome begin(const FilmSettings& settings, const std::vector<TrackKind>& kinds) override
    {
        return guarded([&]() -> Outcome {
            Result<std::unique_ptr<MovieFile>> file = MovieFile::open(settings);
            if (!file)
                return file.error();
            m_file = std::move(*file);
            m_isRecording = settings.fragmentSeconds > 0;
            m_isEnded.resize(m_makers.size());
            for (std::size_t i = 0; i < m_makers.size(); ++i) {
                Result<std::unique_ptr<MovieTrack>> track = m_makers[i](*m_file, kinds[i]);
                if (!track)
                    return track.error();
                m_tracks.push_back(std::move(*track));
            }
            return success();
        });
    }

    Outcome append(std::size_t track, const CMSampleBuffer& piece) override
    {
        return guarded([&]() -> Outcome {
            Outcome written = m_tracks[track]->write(piece);
            return written ? beginFile(m_file->waitingPackets() > kMostWaitingPackets) : written;
        });
    }

    Outcome endTrack(std::size_t track) override
    {
        m_isEnded[track] = true;
        return guarded([&] { return m_tracks[track]->finish(); });
    }

    Outcome finish() override
    {
        return guarded([&]() -> Outcome {
            if (!m_file->hasBegun() && m_file->waitingPackets() == 0)
                return Error{{}, "nothing was recorded"};
            Outcome begun = beginFile(true);
            return begun ? m_file->finish() : begun;
        });
    }

private:
    using Maker = std::function<Result<std::unique_ptr<MovieTrack>>(MovieFile& file, const TrackKind& kind)>;

    /// Once all tracks are known; `anyway`: those that aren't describe themselves as they can.
    Outcome beginFile(bool anyway)
    {
        if (m_file->hasBegun())
            return success();
        for (std::size_t i = 0; i < m_tracks.size(); ++i) {
            if (m_tracks[i]->isDescribed())
                continue;
            if (!anyway || !(m_isRecording || m_isEnded[i]))
                return success();
            if (Outcome described = m_tracks[i]->describeEmpty(); !described)
                return described;
        }
        return m_file->begin();
    }

    const char* m_containerName;
    std::vector<Maker> m_makers;
    std::unique_ptr<MovieFile> m_file;
    std::vector<std::unique_ptr<MovieTrack>> m_tracks;
    std::vector<bool> m_isEnded; ///< a track each
    bool m_isRecording = false;
};

} // namespace

Result<std::unique_ptr<MovieWriting>> writeMovie(const char* container)
{
    if (!avcodec_find_encoder_by_name("libx264"))
        return Error{{}, cause::kNoH264};
    return std::unique_ptr<MovieWriting>(std::make_unique<MovieEncoding>(container));
}

} // namespace lamina
