#include "platform/media/ffmpeg/TrackReading_p.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/ClipPicture_p.h"
#include "platform/media/ffmpeg/FrameScaling_p.h"
#include "platform/media/ffmpeg/MediaTime_p.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace lamina {

namespace {

// With more, what is made of a damaged clip depends on which thread comes first.
constexpr int kDecodingThreads = 1;

AVTrackTransform transformOf(const AVStream* stream)
{
    const Turn turn = Turn::ofTrack(stream);
    // A shown pixel is the stored one of column and row; a mirroring from left to right comes first.
    if (!turn.swaps)
        return {turn.flipsRows ? 2 : 0, turn.flipsColumns != turn.flipsRows};
    return {turn.flipsRows ? 1 : 3, turn.flipsColumns == turn.flipsRows};
}

AVVideoTrack videoTrack(ClipSource& source)
{
    AVStream* picture = source.picture();
    const AVRational rate = picture->avg_frame_rate;
    AVVideoTrack track;
    track.naturalSize = storedSize(source.container(), picture);
    track.preferredTransform = transformOf(picture);
    track.nominalFrameRate = rate.num > 0 && rate.den > 0 ? av_q2d(rate) : 0;
    track.isFullRange = isFullRange(picture->codecpar->format, picture->codecpar->color_range);
    track.codec = avcodec_get_name(picture->codecpar->codec_id);
    return track;
}

AVAudioTrack audioTrack(const AVStream* sound)
{
    const AVCodecParameters& coded = *sound->codecpar;
    return {coded.sample_rate, coded.ch_layout.nb_channels, avcodec_get_name(coded.codec_id)};
}

/// When the last of the tracks ends, by the container's clock.
CMTime endOf(ClipSource& source)
{
    CMTime end = kCMTimeInvalid;
    for (const AVStream* stream : {source.picture(), source.sound()}) {
        if (!stream || stream->duration <= 0)
            continue;
        const std::int64_t start = stream->start_time != AV_NOPTS_VALUE ? stream->start_time : 0;
        const CMTime own = mediaTime(start, stream->time_base) + mediaTime(stream->duration, stream->time_base);
        end = end.isValid() ? std::max(end, own) : own;
    }
    const AVFormatContext* container = source.container();
    if (end.isValid() || container->duration <= 0)
        return end;
    // What a header tells counts from zero, what was measured from the beginning.
    const bool measured = container->duration_estimation_method == AVFMT_DURATION_FROM_PTS;
    const std::int64_t start = measured && container->start_time != AV_NOPTS_VALUE ? container->start_time : 0;
    end = mediaTime(start, {1, AV_TIME_BASE}) + mediaTime(container->duration, {1, AV_TIME_BASE});
    return end;
}

/// Of the first frame, or of the first samples where there is no picture.
Result<CMTime> findFirst(ClipSource& source)
{
    AVStream* stream = source.picture() ? source.picture() : source.sound();
    Result<StreamDecoder> decoder = StreamDecoder::open(source, stream, kDecodingThreads);
    if (!decoder)
        return decoder.error();
    const Result<Frame> frame = decoder->next();
    if (!frame)
        return frame.error();
    return *frame ? Result<CMTime>(mediaTime(decoder->ticks(), stream->time_base))
                  : Result<CMTime>(Error{{}, cause::kClipDamaged});
}

/// What the times count from: the beginning of the track that `first` is of, or that of sound which is heard before.
CMTime startOf(ClipSource& source, const CMTime& first)
{
    // What encoders of sound put before to wake the decoder is shorter.
    constexpr double kLongestPriming = 0.1;
    const AVStream* sound = source.picture() ? source.sound() : nullptr;
    const CMTime heard = sound ? mediaTime(sound->start_time, sound->time_base) : kCMTimeInvalid;
    return heard.isValid() && (first - heard).seconds() > kLongestPriming ? heard : first;
}

} // namespace

Result<AssetDetails> readAsset(const ClipFile& clip)
{
    const Result<std::unique_ptr<ClipSource>> opened = ClipSource::open(clip, ClipSource::Tracks::Any);
    if (!opened)
        return opened.error();
    ClipSource& source = **opened;
    AssetDetails details;
    if (source.picture())
        details.video.push_back(videoTrack(source));
    if (source.sound())
        details.audio.push_back(audioTrack(source.sound()));
    if (!details.video.empty()) {
        const IntSize size = details.video.front().naturalSize;
        if (4 * static_cast<std::uint64_t>(size.width) * static_cast<std::uint64_t>(size.height) > clip.memoryLimit)
            return Error{{}, cause::kClipTooLarge};
    }
    const Result<CMTime> first = findFirst(source);
    if (!first)
        return first.error();
    details.startTime = startOf(source, *first);
    if (!details.video.empty())
        details.video.front().startTime = *first;
    const CMTime end = endOf(source);
    details.duration = end.isValid() ? std::max(end - details.startTime, kCMTimeZero) : kCMTimeZero;
    return details;
}

Result<OpenTrack> OpenTrack::open(const ClipFile& clip, TrackRequest::Content content)
{
    const bool pictures = content == TrackRequest::Content::Pictures;
    Result<std::unique_ptr<ClipSource>> source =
        ClipSource::open(clip, pictures ? ClipSource::Tracks::Picture : ClipSource::Tracks::Sound);
    if (!source)
        return source.error();
    OpenTrack track;
    track.source = std::move(*source);
    track.source->waitForEver();
    if (content == TrackRequest::Content::StoredSound)
        return track;
    Result<StreamDecoder> decoder = StreamDecoder::open(*track.source, track.stream(), kDecodingThreads);
    if (!decoder)
        return decoder.error();
    track.decoder.emplace(std::move(*decoder));
    return track;
}

bool isBehind(const CMTimeRange& range, const CMTime& time)
{
    return range.duration.isNumeric() && time >= range.start + range.duration;
}

Result<bool> StartSearch::step(OpenTrack& track, TrackRequest::Content content)
{
    constexpr double kLeads[] = {0, 10}; // an index may be wrong, and a search land behind a key frame
    constexpr int kSearches = 2;
    for (; m_steps < kSearches; ++m_steps) {
        const double lead = m_lead + kLeads[m_steps];
        // Close to the beginning reading from there on is as good.
        if (m_fromZero - lead > 1 && track.source->seekTo(m_start - lead)) {
            ++m_steps;
            if (track.decoder)
                track.decoder->restart();
            return true;
        }
    }
    if (m_steps++ > kSearches)
        return false;
    Result<OpenTrack> anew = OpenTrack::open(track.source->file(), content);
    if (!anew)
        return anew.error();
    track = std::move(*anew);
    return true;
}

Result<std::unique_ptr<TrackReading>> readTrack(const ClipFile& clip, const TrackRequest& request)
{
    Result<OpenTrack> track = OpenTrack::open(clip, request.content);
    if (!track)
        return track.error();
    switch (request.content) {
    case TrackRequest::Content::Pictures:
        return readPictures(std::move(*track), request);
    case TrackRequest::Content::Sound:
        return readSound(std::move(*track), request);
    default:
        return readStoredSound(std::move(*track), request);
    }
}

} // namespace lamina
