#pragma once

#include "cli/capture/CaptureJob.h"
#include "cli/movie/MovieJob.h"
#include "platform/base/Result.h"

#include <functional>
#include <optional>
#include <vector>

namespace lamina {

/// How far a recording is.
struct CaptureProgress {
    double seconds = 0;
    int frames = 0;
};

/// What became of a clip.
struct CapturedClip {
    MovieEnd end = {};                  ///< Interrupted without an error: nobody wants it, and nothing is left
    std::optional<Error> cutShort = {}; ///< why it is shorter than it should be, although it stands
    int dropped = 0;                    ///< frames for which there was no time
    std::vector<Error> warnings = {}; ///< what should be known of it besides: no sound, although there is a microphone
};

/// Records what the camera and, unless the job is mute, the first microphone give, through the job's filters: for as
/// long as the job says, or until somebody asks the command to end, which keeps the clip; asked once more it leaves
/// nothing. A camera that ends meanwhile ends the clip, and so does a frame that can't be drawn or written. `tell` is
/// called ten times a second while it records.
CapturedClip captureClip(const CaptureJob& job, const std::function<void(const CaptureProgress&)>& tell);

} // namespace lamina
