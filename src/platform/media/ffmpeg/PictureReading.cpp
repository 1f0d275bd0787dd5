#include "platform/base/CMTime.h"
#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/ffmpeg/ClipSource_p.h"
#include "platform/media/ffmpeg/FrameScaling_p.h"
#include "platform/media/ffmpeg/MediaTime_p.h"
#include "platform/media/ffmpeg/PixelBufferMaking_p.h"
#include "platform/media/ffmpeg/TrackReading_p.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// A frame and when it is shown.
struct TimedFrame {
    Frame frame;
    CMTime time;
    CMTime duration;
};

class PictureReading final : public TrackReading {
public:
    PictureReading(OpenTrack track, const TrackRequest& request)
        : m_track(std::move(track))
        , m_request(request)
        , m_maker(request.format, request.size, request.makeBuffer)
    {
    }

    Result<CMSampleBuffer> next() override
    {
        if (!m_begun) {
            m_begun = true;
            if (Outcome found = findBeginning(); !found)
                return found.error();
        }
        Result<TimedFrame> timed = take();
        if (!timed)
            return timed.error();
        if (!timed->frame || isBehind(m_request.range, timed->time))
            return CMSampleBuffer{};
        Result<std::shared_ptr<CVPixelBuffer>> buffer = m_maker.make(std::move(timed->frame));
        if (!buffer)
            return buffer.error();
        CMSampleBuffer sample;
        sample.presentationTime = timed->time;
        sample.duration = timed->duration;
        sample.imageBuffer = std::move(*buffer);
        return sample;
    }

private:
    Result<TimedFrame> take()
    {
        if (m_waiting.empty())
            return read();
        TimedFrame first = std::move(m_waiting.front());
        m_waiting.pop_front();
        return first;
    }

    /// The next frame; one without pixels at the end.
    Result<TimedFrame> read()
    {
        Result<Frame> frame = m_track.decoder->next();
        if (!frame)
            return frame.error();
        if (!*frame)
            return m_track.decoder->isDamaged() ? Result<TimedFrame>(Error{{}, cause::kClipDamaged}) : TimedFrame{};
        const AVRational unit = m_track.stream()->time_base;
        // Frames come in the order in which they are shown, whatever their times say.
        std::int64_t ticks = m_track.decoder->ticks();
        if (m_last && ticks <= *m_last)
            ticks = *m_last + 1;
        m_last = ticks;
        const CMTime duration = mediaDuration((*frame)->pkt_duration, unit);
        return TimedFrame{std::move(*frame), mediaTime(ticks, unit) - m_request.startTime, duration};
    }

    /// The first frame that is given is the one that is shown at the range's start.
    Outcome findBeginning()
    {
        if (!(m_request.range.start > kCMTimeZero))
            return success();
        StartSearch search(m_request, 0);
        for (;;) {
            const Result<bool> placed = search.step(m_track, TrackRequest::Content::Pictures);
            if (!placed)
                return placed.error();
            if (!*placed)
                return success();
            m_waiting.clear();
            m_last.reset();
            const Result<bool> found = skipToStart();
            if (!found && m_track.source->isOver())
                return found.error();
            if (found && *found)
                return success();
        }
    }

    /// False where the first frame already comes after the start.
    Result<bool> skipToStart()
    {
        const CMTime start = m_request.range.start;
        TimedFrame before;
        for (;;) {
            Result<TimedFrame> timed = read();
            if (!timed)
                return timed.error();
            if (!timed->frame) {
                // The last frame goes on being shown for as long as it says.
                const bool any = before.frame != nullptr;
                if (any && before.duration.isValid() && before.time + before.duration > start)
                    m_waiting.push_back(std::move(before));
                return any;
            }
            if (timed->time >= start) {
                const bool late = !before.frame && timed->time > start;
                if (before.frame && timed->time > start)
                    m_waiting.push_back(std::move(before));
                m_waiting.push_back(std::move(*timed));
                return !late;
            }
            before = std::move(*timed);
        }
    }

    OpenTrack m_track;
    TrackRequest m_request;
    PixelBufferMaker m_maker;
    std::optional<std::int64_t> m_last; ///< ticks
    std::deque<TimedFrame> m_waiting;   ///< read, and not given yet
    bool m_begun = false;
};

} // namespace

Result<std::unique_ptr<TrackReading>> readPictures(OpenTrack track, const TrackRequest& request)
{
    return std::unique_ptr<TrackReading>(std::make_unique<PictureReading>(std::move(track), request));
}

} // namespace lamina
