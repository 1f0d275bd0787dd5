#pragma once

#include "TestPictures.h"

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGImage.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// Clips made and read by the `ffmpeg` program: eyes other than ours, though the codecs are the same.

namespace lamina::test {

/// Makes a file: `arguments` stand between the program's name and the path. Fails the running test where that fails.
void makeClip(const std::vector<std::string>& arguments, const std::string& path);

/// Four quarters that no turn or mirror maps onto one another: red, green above blue, grey.
CGImage quarters(int width, int height);
/// The colours in the middle of a picture's quarters: upper left, upper right, lower left, lower right.
std::vector<Rgba> quarterColors(const CGImage& image);
/// A clip of such quarters: `filters` follow the picture's, `options` the inputs.
void makeQuartersClip(const std::string& path, IntSize size, const std::string& filters,
                      const std::vector<std::string>& options, const std::string& frames = "10");

/// What ffprobe tells of a file: "streams" and "format".
nlohmann::json probe(const std::string& path);
/// All frames as ffmpeg converts them to one of its formats, with `filters` before, one after the other; not turned.
std::string decodedRows(const std::string& path, const std::string& filters, const std::string& format);
/// The sound's samples as they are stored, of all channels.
std::vector<float> storedSound(const std::string& path);
/// When its frames are shown, in seconds.
std::vector<double> frameTimes(const std::string& path);
/// What it tells of each packet of the tracks of a kind ("v", "a").
nlohmann::json probePackets(const std::string& path, const std::string& tracks);
/// A frame as ffmpeg decodes it, by BT.709 (to a BMP, since a PNG would carry the gamma that the film names).
CGImage decodedFrame(const std::string& path, int index);
/// The sound's samples, of one channel at 8 kHz.
std::vector<float> decodedSound(const std::string& path);

} // namespace lamina::test
