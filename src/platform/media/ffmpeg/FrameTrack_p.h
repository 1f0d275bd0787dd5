#pragma once

#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetWriter.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/H264Encoder_p.h"
#include "platform/media/ffmpeg/MovieFile_p.h"
#include "platform/media/ffmpeg/MovieTrack_p.h"
#include "platform/media/ffmpeg/PictureAdapter_p.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>

namespace lamina {

/// A movie's track of frames, each with its own time. The first one tells how they are encoded.
class FrameTrack final : public MovieTrack {
public:
    /// Before the file is begun.
    static Result<std::unique_ptr<MovieTrack>> add(MovieFile& file, const AVVideoSettings& settings,
                                                   const AVTrackTransform& transform);

    bool isDescribed() const override { return m_encoder != nullptr; }
    Outcome describeEmpty() override { return open({}, kCMTimeZero); }
    /// Of the frames before the beginning the last one is shown from there on where it lasts so long. What is not after
    /// the frame before is dropped.
    Outcome write(const CMSampleBuffer& frame) override;
    Outcome finish() override;

private:
    FrameTrack(MovieFile& file, const AVVideoSettings& settings, AVStream* track, const AVTrackTransform& turn);
    Outcome open(const PictureKind& kind, const CMTime& time);
    Outcome show(const CMSampleBuffer& frame, const CMTime& time);
    Outcome encode(const AVFrame* frame);
    std::int64_t ticks(const CMTime& time) const;
    std::int64_t ownDuration(const CMSampleBuffer& frame) const;

    MovieFile& m_file;
    const AVVideoSettings m_settings;
    const AVTrackTransform m_turn; ///< of the frames themselves
    AVStream* m_track;
    SharedEncoder m_encoder;
    std::optional<PictureAdapter> m_adapter;
    std::optional<CMSampleBuffer> m_early; ///< the last frame before the movie's beginning
    std::int64_t m_last = -1;
    std::map<std::int64_t, std::int64_t> m_durations; ///< of the frames that are being encoded, by their times
};

} // namespace lamina
