#include "platform/media/AVComposition.h"

#include <algorithm>
#include <utility>

namespace lamina {

Outcome AVMutableComposition::insertTimeRange(const CMTimeRange& range, std::shared_ptr<const AVURLAsset> asset)
{
    if (!asset)
        return Error{{}, "there is no movie to insert"};
    const CMTime start = std::max(range.start, kCMTimeZero);
    const CMTime end = std::min(range.duration.isNumeric() ? range.start + range.duration : kCMTimePositiveInfinity,
                                asset->duration());
    if (!start.isNumeric() || !(start < end))
        return Error{asset->path(), "nothing of the movie lies in the range"};
    m_clips.push_back({std::move(asset), {start, end - start}, m_duration});
    m_duration = m_duration + (end - start);
    return success();
}

IntSize AVMutableComposition::naturalSize() const
{
    for (const AVCompositionClip& clip : m_clips) {
        if (clip.asset->videoTracks().empty())
            continue;
        const AVVideoTrack& track = clip.asset->videoTracks().front();
        const IntSize stored = track.naturalSize;
        return track.preferredTransform.swapsSides() ? IntSize{stored.height, stored.width} : stored;
    }
    return {};
}

float AVMutableAudioMix::volume(std::size_t clip) const
{
    const auto found = m_volumes.find(clip);
    return found == m_volumes.end() ? 1 : found->second;
}

} // namespace lamina
