#pragma once

#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetWriter.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/MediaModule_p.h"

#include <cstddef>
#include <vector>

namespace lamina {

/// A movie that the module writes, by one thread at a time: tracks are added, it is begun, pieces come in the order of
/// their tracks' times, it is finished. An error without a subject is about the movie.
class MovieWriting {
public:
    virtual ~MovieWriting() = default;

    /// Tracks count from 0.
    virtual Outcome addVideo(const AVVideoSettings& settings) = 0;
    virtual Outcome addAudio(const AVAudioSettings& settings) = 0;
    virtual Outcome addStoredAudio(const ClipFile& clip) = 0;

    /// What is told of a track when it begins.
    struct TrackKind {
        AVTrackTransform transform;
        bool realTime = false; ///< its times are those of a clock, and waver
    };
    /// `settings` and what it points to outlive the writing.
    virtual Outcome begin(const FilmSettings& settings, const std::vector<TrackKind>& kinds) = 0;
    /// Takes a piece whose time counts from the movie's beginning; what lies before is cut.
    virtual Outcome append(std::size_t track, const CMSampleBuffer& piece) = 0;
    /// Nothing comes any more.
    virtual Outcome endTrack(std::size_t track) = 0;
    virtual Outcome finish() = 0;
};

} // namespace lamina
