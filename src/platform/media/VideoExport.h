#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <atomic>
#include <functional>
#include <string>

// Writing MP4: H.264 High without B-frames in 4:2:0 of 8 bits, BT.709 in video range, and AAC; the index stands before
// the data. Sides are even: an odd one is made so by its last column or row, once more. No title, place or date is
// written. The same input gives the same bytes, on any number of processors.
//
// A file is written whole or not at all; an existing one keeps its contents on failure. Pipes and devices are refused,
// since the index is moved to the front at the end. The subject of an error is the path of the file to which it
// happened. FFmpeg is loaded with the first call, see Clip.h. All of it is usable from any thread, and blocks its
// caller.

namespace lamina {

/// How a video is written, and how one follows it.
struct VideoExportOptions {
    /// The constant rate factor, x264's measure of loss: 1 the best, 51 the smallest; clamped. Six more halve the size.
    int crf = 24;
    /// Of the sides; below the size that is the most, more makes it larger. What is not above 0, or not finite, is 1.
    double scale = 1;
    /// Told from 0 to 1, never downwards, in the caller's thread; 1 once the file stands.
    std::function<void(double)> progress = {};
    /// Set from any thread to stop, within 100 ms, with the cause "cancelled". The picture that is being drawn or
    /// encoded then is left to a thread that ends with it, some seconds later at most.
    const std::atomic<bool>* cancelled = nullptr;
};

/// A picture that stands still.
struct StillVideo {
    UIImage picture;       ///< of any orientation and colours; what is transparent is on white
    double seconds = 3;    ///< rounded to frames, of which 30 make a second; at least one, at most an hour
    std::string soundFile; ///< any clip with sound, repeated as often as needed; empty: no sound
};

/// A video holds at most so many blocks of 16 × 16 pixels (3840 × 2160, 3072 × 3072), which is what players of level
/// 5.1 are made for, and the longest side that goes with them.
inline constexpr int kMostMacroblocks = 36'864;
inline constexpr int kLongestVideoSide = 8'688;

/// The pixels that a picture of `size` has in a video at a scale: sides times `scale`, rounded, in the same shape
/// reduced to the limits above, at least 1. The file's sides are these, rounded up to even numbers.
IntSize videoSize(IntSize size, double scale = 1);

/// The path of "Blank Audio.mp3", three seconds of silence to be a video's sound; empty where it is not installed. The
/// variable LAMINA_SOUNDS of the environment may name its folder.
std::string blankAudioFile();

/// Writes a video that shows one picture.
Outcome writeStillVideo(const StillVideo& still, const std::string& path, const VideoExportOptions& options = {});

/// Writes a clip anew: upright, every frame at its time (counted from the first), sound as AAC of one or two channels.
/// `clip` is read as Clip.h says. A clip that ends too early, or whose sound nothing can read, is an error.
Outcome convertVideo(const std::string& clip, const std::string& path, const VideoExportOptions& options = {});

} // namespace lamina
