#pragma once

#include "cli/capture/CaptureJob.h"
#include "platform/base/CGGeometry.h"

#include <string>

namespace lamina {

/// The cameras and microphones that there are now, for people: their names and IDs, where a camera looks, how it is
/// turned, its modes.
std::string captureDevicesAsText();

/// For programs: an object {"cameras": [{"name", "id", "position": "front", "back" or null, "rotation", "modes":
/// [{"width", "height", "minRate", "maxRate", "encoding"}]}], "microphones": [{"name", "id"}]}. The rotation is by how
/// many degrees clockwise frames are turned to be upright, sides are those before; rates are frames a second.
std::string captureDevicesAsJson();

/// What was taken, for programs: an object {"input": the camera's name, "output", "filters", "width", "height"}.
std::string stillAsJson(const CaptureJob& job, IntSize size);

} // namespace lamina
