#pragma once

#include "platform/media/AVCaptureTypes.h"
#include "platform/media/capture/RawFrame.h"

#include <cstdint>
#include <optional>
#include <spa/param/video/raw.h>
#include <spa/pod/pod.h>
#include <spa/utils/defs.h>
#include <string>
#include <vector>

namespace lamina {

/// A mode as the node has told of it.
struct VideoMode {
    AVCaptureDeviceFormat format;
    std::vector<spa_fraction> rates = {}; ///< those there are, the node's own choice first; empty: not told, or a range
    spa_fraction usual = {0, 1};          ///< the node's own choice; 0: not told
};

/// PipeWire's number of an encoding; none of MJPG, which is another kind of media.
std::optional<std::uint32_t> videoFormatOf(RawEncoding encoding);
/// None: we don't read it.
std::optional<RawEncoding> encodingOfVideoFormat(std::uint32_t format);
std::optional<RawEncoding> encodingNamed(const std::string& name);

/// Adds the modes that one description of a node's formats (EnumFormat) stands for, within bounds: of a range of sizes
/// the usual ones. Nothing of what we don't read.
void addModes(const spa_pod& description, std::vector<VideoMode>& modes);
/// The largest first, of one size the cheapest encoding first, each once.
void sortModes(std::vector<VideoMode>& modes);

/// The rate of the mode that is nearest to so many frames a second (0: the node's own choice); none: not told.
std::optional<spa_fraction> nearestRate(const VideoMode& mode, double framesPerSecond);

} // namespace lamina
