#include "platform/media/ffmpeg/SoundTracks_p.h"

#include "platform/base/Causes.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

// What is added to keep the times is heard as a click, what isn't as echo: files are exact, clocks are not.
constexpr double kSlipOfFiles = 0.004;
constexpr double kSlipOfClocks = 0.04;

constexpr int kUsualRate = 48'000;

} // namespace

Result<std::unique_ptr<MovieTrack>> NumbersTrack::add(MovieFile& file, const AVAudioSettings& settings, bool realTime)
{
    SoundSettings sound;
    sound.rate = settings.sampleRate;
    sound.channels = settings.channels;
    sound.bitsPerSecond = settings.bitsPerSecond;
    sound.slip = realTime ? kSlipOfClocks : kSlipOfFiles;
    Result<std::unique_ptr<SoundTrack>> track = SoundTrack::add(file, sound);
    if (!track)
        return track.error();
    return std::unique_ptr<MovieTrack>(new NumbersTrack(std::move(*track)));
}

Outcome NumbersTrack::write(const CMSampleBuffer& piece)
{
    if (!piece.audio)
        return Error{{}, "packets of sound come where numbers were announced"};
    const AudioBuffer& audio = *piece.audio;
    if (audio.sampleCount() == 0)
        return success();
    const Frame frame(av_frame_alloc());
    if (!frame)
        return Error{{}, cause::kNoMemory};
    frame->format = AV_SAMPLE_FMT_FLT;
    frame->sample_rate = audio.sampleRate;
    frame->nb_samples = audio.sampleCount();
    av_channel_layout_default(&frame->ch_layout, audio.channels);
    frame->data[0] = reinterpret_cast<std::uint8_t*>(const_cast<float*>(audio.samples.data()));
    frame->extended_data = frame->data;
    return m_track->write(*frame, piece.presentationTime.seconds());
}

Result<std::unique_ptr<MovieTrack>> StoredTrack::add(MovieFile& file, const AVCodecParameters& parameters)
{
    AVStream* track = file.reserveTrack();
    if (!track || avcodec_parameters_copy(track->codecpar, &parameters) < 0)
        return Error{{}, cause::kNoMemory};
    track->codecpar->codec_tag = 0; // containers have their own
    const AVRational unit{1, parameters.sample_rate > 0 ? parameters.sample_rate : kUsualRate};
    track->time_base = unit;
    return std::unique_ptr<MovieTrack>(new StoredTrack(file, track, unit));
}

Outcome StoredTrack::write(const CMSampleBuffer& piece)
{
    if (!piece.packet)
        return Error{{}, "numbers of sound come where packets were announced"};
    Packet packet(av_packet_clone(static_cast<const AVPacket*>(piece.packet.get())));
    if (!packet)
        return Error{{}, cause::kNoMemory};
    const std::int64_t time = piece.presentationTime.converted(m_unit.den).value;
    const std::int64_t duration = packet->time_base.den > 0 ? av_rescale_q(packet->duration, packet->time_base, m_unit)
                                                            : piece.duration.converted(m_unit.den).value;
    // A decoder needs some of what lies before the beginning; the container says that it is not to be heard.
    if (time + duration <= -static_cast<std::int64_t>(m_track->codecpar->initial_padding) || time <= m_last)
        return success();
    m_last = time;
    packet->pts = time;
    packet->dts = time;
    packet->duration = std::max<std::int64_t>(0, duration);
    packet->pos = -1;
    return m_file.write(std::move(packet), m_unit, m_track);
}

} // namespace lamina
