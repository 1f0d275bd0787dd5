#include "platform/base/Result.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/ffmpeg/ClipSource_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/FilmWriting_p.h"
#include "platform/media/ffmpeg/MovieFile_p.h"
#include "platform/media/ffmpeg/SoundTrack_p.h"
#include "platform/media/ffmpeg/StreamDecoder_p.h"
#include "platform/media/ffmpeg/VideoTrack_p.h"

#include "platform/base/Causes.h"

#include <memory>
#include <optional>
#include <utility>

namespace lamina {

namespace {

constexpr int kFramesPerSecond = 30;

/// A file's sound, from its beginning again whenever it ends.
class RepeatedSound {
public:
    Outcome open(const ClipFile& file)
    {
        m_file = file;
        return rewind();
    }

    const AVCodecParameters& parameters() { return *m_source->sound()->codecpar; }

    /// Goes on until the track stands at `end`.
    Outcome writeUntil(SoundTrack& track, double end)
    {
        while (track.time() < end) {
            const double before = track.time();
            const Result<bool> wrote = writePacket(track);
            if (!wrote)
                return wrote.error();
            m_silent = track.time() > before ? 0 : m_silent + 1;
            if (m_silent > kMostSilentPackets)
                return Error{{}, cause::kClipDamaged};
            if (!*wrote)
                if (Outcome again = rewind(); !again)
                    return again;
        }
        return success();
    }

private:
    /// So many packets without a sample are no sound.
    static constexpr int kMostSilentPackets = 1000;

    Outcome rewind()
    {
        Result<std::unique_ptr<ClipSource>> source = ClipSource::open(m_file, ClipSource::Tracks::Sound);
        if (!source)
            return source.error();
        m_decoder.reset();
        m_source = std::move(*source);
        m_source->waitForEver(); // it is read as the film grows
        Result<StreamDecoder> decoder = StreamDecoder::open(*m_source, m_source->sound(), 1);
        if (!decoder)
            return decoder.error();
        m_decoder.emplace(std::move(*decoder));
        return success();
    }

    /// False at the end of the file.
    Result<bool> writePacket(SoundTrack& track)
    {
        const Packet packet(av_packet_alloc());
        if (!packet)
            return Error{{}, cause::kNoMemory};
        Result<bool> read = m_source->read(packet.get());
        if (!read)
            return read;
        const auto use = [&track](const AVFrame& frame, double) { return track.write(frame, track.time()); };
        const Outcome decoded = m_decoder->decode(*read ? packet.get() : nullptr, use);
        return decoded ? read : decoded.error();
    }

    ClipFile m_file;
    std::unique_ptr<ClipSource> m_source;
    std::optional<StreamDecoder> m_decoder;
    int m_silent = 0;
};

/// A film of one picture while it is written.
class StillWriter {
public:
    StillWriter(const StillFilm& still, const FilmSettings& settings)
        : m_still(still)
        , m_settings(settings)
    {
    }

    Outcome run()
    {
        Outcome outcome = open();
        if (outcome)
            outcome = m_film->begin();
        if (outcome)
            outcome = m_pictures->setPicture(m_still.picture);
        for (int i = 0; outcome && i < m_still.frames; ++i)
            outcome = writeFrame(i);
        if (outcome)
            outcome = m_pictures->finish();
        if (outcome && m_track)
            outcome = m_track->finish();
        return outcome ? m_film->finish() : outcome;
    }

private:
    Outcome open()
    {
        Result<std::unique_ptr<MovieFile>> film = MovieFile::open(m_settings);
        if (!film)
            return film.error();
        m_film = std::move(*film);
        Result<std::unique_ptr<VideoTrack>> pictures = VideoTrack::add(
            *m_film, m_still.picture.size, {kFramesPerSecond, 1}, m_settings.crf, VideoTrack::Content::Still);
        if (!pictures)
            return pictures.error();
        m_pictures = std::move(*pictures);
        return m_still.sound ? openSound(*m_still.sound) : success();
    }

    Outcome openSound(const ClipFile& file)
    {
        if (Outcome opened = m_sound.open(file); !opened)
            return opened;
        SoundSettings settings = SoundSettings::of(m_sound.parameters());
        settings.end = static_cast<double>(m_still.frames) / kFramesPerSecond;
        Result<std::unique_ptr<SoundTrack>> track = SoundTrack::add(*m_film, settings);
        if (!track)
            return track.error();
        m_track = std::move(*track);
        return success();
    }

    Outcome writeFrame(int index)
    {
        constexpr double kDuration = 1.0 / kFramesPerSecond;
        Outcome outcome = m_pictures->show(index * kDuration, kDuration);
        if (outcome && m_track)
            outcome = m_sound.writeUntil(*m_track, (index + 1) * kDuration);
        m_film->tell(static_cast<double>(index + 1) / (m_still.frames + 1));
        return outcome;
    }

    const StillFilm& m_still;
    const FilmSettings& m_settings;
    std::unique_ptr<MovieFile> m_film;
    std::unique_ptr<VideoTrack> m_pictures;
    RepeatedSound m_sound;
    std::unique_ptr<SoundTrack> m_track;
};

} // namespace

Outcome writeStill(const StillFilm& still, const FilmSettings& settings)
{
    return StillWriter(still, settings).run();
}

} // namespace lamina
