#pragma once

#include "platform/base/Result.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVCaptureDevice.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// The cameras and microphones of the desktop, as `AVCaptureDevice` gives them from then on: asks for them and waits
/// for the first list, two seconds at most. Nobody is asked for leave: whoever has a shell has it. The error says why
/// there are none, where that is known.
Outcome findCaptureDevices();

/// The camera that a command line means: by its name or its unique ID, "front" or "back"; the system's first where
/// `typed` is empty. The error names those that there are.
Result<std::shared_ptr<AVCaptureDevice>> cameraNamed(const std::string& typed);

} // namespace lamina
