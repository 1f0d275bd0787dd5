#pragma once

#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <atomic>
#include <string_view>

namespace lamina {

/// The frame that stands for a clip where a picture is asked for: the second of a film of 30 frames a second.
inline constexpr CMTime kClipThumbnailTime = CMTime::make(1, 30);

/// The frame that a clip shows at exactly this time, upright by its track's matrix; of a time after the end the last
/// one. `clip`: a path or a "file:" URL. An opaque picture of scale 1 and orientation up. `cancelled`: set from any
/// thread to stop with the cause "cancelled". The errors are those of `loadClipFrame` and `pathOfFileURL`. Blocks its
/// caller, usable from any thread.
Result<UIImage> thumbnailOfVideo(std::string_view clip, const CMTime& time = kClipThumbnailTime,
                                 const std::atomic<bool>* cancelled = nullptr);

} // namespace lamina
