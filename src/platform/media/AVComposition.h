#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetReader.h"

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

namespace lamina {

/// A stretch of a movie that stands in a composition.
struct AVCompositionClip {
    std::shared_ptr<const AVURLAsset> asset;
    CMTimeRange range; ///< of the asset, cut to its length
    CMTime start;      ///< in the composition
};

/// Stretches of movies, one after another. A value: filled first, then read.
class AVMutableComposition {
public:
    /// Puts a stretch behind those that stand there. The error tells that nothing of the movie lies in the range.
    Outcome insertTimeRange(const CMTimeRange& range, std::shared_ptr<const AVURLAsset> asset);

    const std::vector<AVCompositionClip>& clips() const { return m_clips; }
    CMTime duration() const { return m_duration; }
    /// Of the first clip with a picture, as it is seen; the zero size where none has one.
    IntSize naturalSize() const;

private:
    std::vector<AVCompositionClip> m_clips;
    CMTime m_duration = kCMTimeZero;
};

/// How a composition's frames are drawn.
struct AVMutableVideoComposition {
    IntSize renderSize = {}; ///< in pixels; the zero size: the composition's own
    double renderScale = 1;  ///< times that
};

/// How loud a composition's clips are.
class AVMutableAudioMix {
public:
    /// A factor of the samples, 1 at first. Negative ones and what is no number count as 0.
    void setVolume(float volume, std::size_t clip) { m_volumes[clip] = volume > 0 ? volume : 0; }
    float volume(std::size_t clip) const;

private:
    std::map<std::size_t, float> m_volumes;
};

/// Reads the clips as one movie, each by a reader of its own that is made when its turn comes. All frames are upright,
/// in BGRA and of the render size: of other shape they stand in the middle on black. They are given at the times of the
/// composition, the first of a clip not before its start. Sound comes as numbers, in each clip's own rate and channels,
/// cut to the sample, times the clip's volume. It can't be passed on as it is stored: an output that is asked for so
/// gives numbers, one of other pixels is null.
std::unique_ptr<AVAssetReader> readerOfComposition(const AVMutableComposition& composition,
                                                   const AVMutableVideoComposition& videoComposition = {},
                                                   const AVMutableAudioMix& audioMix = {});

} // namespace lamina
