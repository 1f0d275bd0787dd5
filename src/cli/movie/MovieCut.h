#pragma once

#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetReader.h"

#include <memory>

namespace lamina {

/// Reads the part of a movie that lies in `range`, exactly: the frame that is seen at its start begins there, none
/// begins at its end or later, sound as numbers is cut to the sample. Times stay the movie's.
std::unique_ptr<AVAssetReader> makeCutReader(std::shared_ptr<const AVURLAsset> asset, const CMTimeRange& range);

/// Whether the range leaves anything out.
bool isCut(const CMTimeRange& range);

} // namespace lamina
