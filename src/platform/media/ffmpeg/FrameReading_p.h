#pragma once

#include "platform/base/Result.h"
#include "platform/media/ClipDetails.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/ffmpeg/ClipSource_p.h"

namespace lamina {

/// What a clip that stands open says of itself.
ClipDetails detailsOf(ClipSource& source);

/// `MediaModule::details`.
Result<ClipDetails> readDetails(const ClipFile& clip);
/// `MediaModule::frame`.
Result<double> readFrame(const ClipFile& clip, double seconds, ClipDetails& details,
                         const MediaModule::Allocate& allocate);

} // namespace lamina
