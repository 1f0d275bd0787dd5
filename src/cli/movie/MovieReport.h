#pragma once

#include "cli/movie/MovieJob.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// What was written, as the file itself tells it.
struct MovieReport {
    std::string input;
    std::string output;
    std::vector<std::string> filters;
    int frames = 0;
    double seconds = 0;
    IntSize size = {}; ///< as it is seen
    AVVideoTrack picture = {};
    std::optional<AVAudioTrack> sound = {};
    std::uintmax_t bytes = 0;
    std::optional<int> dropped = {}; ///< frames of a camera for which there was no time
};

/// Reads the movie that has been written: `frames` of `input`, through these filters.
Result<MovieReport> reportOn(const std::string& input, const std::string& output, std::vector<std::string> filters,
                             int frames);

/// "film.mp4: 300 frames, 10 s, 1920 x 1080 pixels", and how many were dropped, if any.
std::string asLine(const MovieReport& report);

/// An object {"input", "output", "filters", "frames", "seconds", "width", "height", "rotation", "frameRate", "codec",
/// "sound": {"codec", "sampleRate", "channels"} or null, "bytes"}, of a camera also "dropped". Sides are those of the
/// upright picture; the rotation is what players turn the stored rows by, in degrees clockwise.
std::string asJson(const MovieReport& report);

} // namespace lamina
