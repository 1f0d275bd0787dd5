#pragma once

#include "platform/media/AVAsset.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"

namespace lamina {

/// The frame as it is seen, for containers that can't tell how it is to be turned: 4:2:0 of 8 bits with even sides, as
/// planes or with pairs of chroma. Null when memory is short.
Frame turned(const AVFrame& frame, const AVTrackTransform& transform);

} // namespace lamina
