#pragma once

#include "cli/capture/CaptureJob.h"
#include "cli/common/ExitCode.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

namespace lamina {

/// A still, or why there is none.
struct CapturedStill {
    UIImage picture = {};
    ExitCode code = ExitCode::Good;
    Error error = {}; ///< of any other code
};

/// Takes a still in the camera's largest size, upright, through the job's filters.
CapturedStill captureStill(const CaptureJob& job);

} // namespace lamina
