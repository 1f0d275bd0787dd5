#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/ClipPicture_p.h"
#include "platform/media/ffmpeg/ClipSource_p.h"
#include "platform/media/ffmpeg/FilmWriting_p.h"
#include "platform/media/ffmpeg/FrameReading_p.h"
#include "platform/media/ffmpeg/MovieFile_p.h"
#include "platform/media/ffmpeg/SoundTrack_p.h"
#include "platform/media/ffmpeg/StreamDecoder_p.h"
#include "platform/media/ffmpeg/VideoTrack_p.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace lamina {

namespace {

// With more, what is made of a damaged clip depends on which thread comes first.
constexpr int kDecodingThreads = 1;

/// The rate that the encoder plans with; the frames' own times are what is written.
AVRational plannedRate(const AVStream* picture)
{
    const AVRational rate = picture->avg_frame_rate;
    constexpr double kHighest = 1000;
    return rate.num > 0 && rate.den > 0 && av_q2d(rate) <= kHighest ? rate : AVRational{30, 1};
}

/// A clip on its way into a film.
class ClipConverter {
public:
    ClipConverter(const MediaModule::SizeRule& size, const FilmSettings& settings)
        : m_size(size)
        , m_settings(settings)
    {
    }

    Outcome run(const ClipFile& clip)
    {
        Outcome outcome = openClip(clip);
        if (outcome)
            outcome = openFilm();
        if (outcome)
            outcome = m_film->begin();
        if (outcome)
            outcome = convertPackets();
        if (outcome)
            outcome = m_pictures->finish();
        if (outcome && m_sound)
            outcome = m_sound->finish();
        return outcome ? m_film->finish() : outcome;
    }

private:
    Outcome openClip(const ClipFile& clip)
    {
        Result<std::unique_ptr<ClipSource>> source = ClipSource::open(clip, ClipSource::Tracks::PictureAndSound);
        if (!source)
            return source.error();
        m_clip = std::move(*source);
        m_clip->waitForEver();
        if (Outcome opened = openDecoder(m_clip->picture(), m_pictureDecoder); !opened)
            return opened;
        return m_clip->sound() ? openDecoder(m_clip->sound(), m_soundDecoder) : success();
    }

    Outcome openDecoder(AVStream* stream, std::optional<StreamDecoder>& decoder)
    {
        Result<StreamDecoder> opened = StreamDecoder::open(*m_clip, stream, kDecodingThreads);
        if (!opened)
            return opened.error();
        decoder.emplace(std::move(*opened));
        return success();
    }

    Outcome openFilm()
    {
        AVStream* picture = m_clip->picture();
        Result<std::unique_ptr<MovieFile>> film = MovieFile::open(m_settings);
        if (!film)
            return film.error();
        m_film = std::move(*film);
        const IntSize size = m_size(shownSize(m_clip->container(), picture));
        m_converter.emplace(Turn::ofTrack(picture), size);
        m_rows.resize(4 * static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
        Result<std::unique_ptr<VideoTrack>> pictures =
            VideoTrack::add(*m_film, size, plannedRate(picture), m_settings.crf, VideoTrack::Content::Motion);
        if (!pictures)
            return pictures.error();
        m_pictures = std::move(*pictures);
        return m_clip->sound() ? openSound() : success();
    }

    Outcome openSound()
    {
        Result<std::unique_ptr<SoundTrack>> sound =
            SoundTrack::add(*m_film, SoundSettings::of(*m_clip->sound()->codecpar));
        if (!sound)
            return sound.error();
        m_sound = std::move(*sound);
        return success();
    }

    Outcome convertPackets()
    {
        const Packet packet(av_packet_alloc());
        if (!packet)
            return Error{{}, cause::kNoMemory};
        for (;;) {
            const Result<bool> read = m_clip->read(packet.get());
            if (!read)
                return read.error();
            if (!*read)
                return drain();
            Outcome decoded = decode(packet->stream_index, packet.get());
            av_packet_unref(packet.get());
            if (!decoded)
                return decoded;
            constexpr double kShareOfReading = 0.99; // the index is still to come
            m_film->tell(m_clip->share() * kShareOfReading);
        }
    }

    Outcome drain()
    {
        Outcome outcome = decode(m_clip->picture()->index, nullptr);
        if (outcome)
            outcome = m_pictureDecoder->outcome();
        if (outcome && m_sound)
            outcome = decode(m_clip->sound()->index, nullptr);
        return outcome;
    }

    Outcome decode(int index, const AVPacket* packet)
    {
        if (m_sound && index == m_clip->sound()->index)
            return m_soundDecoder->decode(
                packet, [this](const AVFrame& frame, double time) { return m_sound->write(frame, time); });
        return m_pictureDecoder->decode(packet,
                                        [this](const AVFrame& frame, double time) { return showFrame(frame, time); });
    }

    Outcome showFrame(const AVFrame& frame, double time)
    {
        Outcome outcome = m_converter->convert(frame, m_rows.data());
        const IntSize size = m_converter->size();
        if (outcome)
            outcome = m_pictures->setPicture({m_rows.data(), 4 * static_cast<std::size_t>(size.width), size});
        return outcome ? m_pictures->show(time, m_pictureDecoder->frameDuration(frame)) : outcome;
    }

    const MediaModule::SizeRule& m_size;
    const FilmSettings& m_settings;
    std::unique_ptr<ClipSource> m_clip;
    std::optional<StreamDecoder> m_pictureDecoder;
    std::optional<StreamDecoder> m_soundDecoder;
    std::optional<FrameConverter> m_converter;
    std::vector<std::uint8_t> m_rows;
    std::unique_ptr<MovieFile> m_film;
    std::unique_ptr<VideoTrack> m_pictures;
    std::unique_ptr<SoundTrack> m_sound;
};

} // namespace

Outcome convertClip(const ClipFile& clip, const MediaModule::SizeRule& size, const FilmSettings& settings)
{
    return ClipConverter(size, settings).run(clip);
}

} // namespace lamina
