#pragma once

#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/ffmpeg/ClipSource_p.h"
#include "platform/media/ffmpeg/StreamDecoder_p.h"

#include <memory>
#include <optional>

namespace lamina {

/// `MediaModule::asset`.
Result<AssetDetails> readAsset(const ClipFile& clip);
/// `MediaModule::readTrack`.
Result<std::unique_ptr<TrackReading>> readTrack(const ClipFile& clip, const TrackRequest& request);

/// The file behind one track, and its decoder.
struct OpenTrack {
    std::unique_ptr<ClipSource> source;
    std::optional<StreamDecoder> decoder; ///< nothing where packets are passed on

    static Result<OpenTrack> open(const ClipFile& clip, TrackRequest::Content content);
    AVStream* stream() const { return source->picture() ? source->picture() : source->sound(); }
};

Result<std::unique_ptr<TrackReading>> readPictures(OpenTrack track, const TrackRequest& request);
Result<std::unique_ptr<TrackReading>> readSound(OpenTrack track, const TrackRequest& request);
Result<std::unique_ptr<TrackReading>> readStoredSound(OpenTrack track, const TrackRequest& request);

/// Whether a piece that begins at `time` comes after the range.
bool isBehind(const CMTimeRange& range, const CMTime& time);

/// Where to begin reading so that everything from a range's start on is found: each call looks farther to the front.
class StartSearch {
public:
    StartSearch(const TrackRequest& request, double lead)
        : m_start((request.startTime + request.range.start).seconds())
        , m_fromZero(request.range.start.seconds())
        , m_lead(lead)
    {
    }

    /// Places the track anew; false when it had been read from its very beginning already.
    Result<bool> step(OpenTrack& track, TrackRequest::Content content);

private:
    double m_start; ///< by the container's clock
    double m_fromZero;
    double m_lead;
    int m_steps = 0;
};

} // namespace lamina
