#pragma once

#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/media/ClipDetails.h"

#include <atomic>
#include <cstddef>
#include <string>

// Clips: films in any container and codec that FFmpeg reads. FFmpeg is loaded with the first call and stays; where it
// is missing, every call fails and says so.
//
// Reading never leaves the clip's own file: lists of other files, and parts that lie elsewhere, are refused. A clip
// that claims more than memory can hold, or that takes too long to find its way in, is an error like a damaged one. The
// subject of an error is the clip's path. All of it is usable from any thread, and blocks its caller.

namespace lamina {

/// One frame, and the clip that it stands in.
struct ClipFrame {
    UIImage picture;  ///< upright, opaque sRGB of scale 1
    double time = 0;  ///< when it begins, in seconds from the clip's first frame
    ClipDetails clip; ///< of the whole
};

/// How far reading may go.
struct ClipLimits {
    /// Set from any thread to stop, within some milliseconds, with the cause "cancelled".
    const std::atomic<bool>* cancelled = nullptr;
    /// The most memory for the pixels of one frame, in bytes; a clip that claims more is refused. A codec keeps some
    /// frames more, of 1.5 bytes a pixel (3 in 10 bits), as many as the clip's coding asks for.
    std::size_t memoryLimit = std::size_t{256} << 20;
    /// How many seconds finding one's way in, or to a frame, may take.
    double seconds = 10;
};

/// Reads what the clip says of itself, without decoding it.
Result<ClipDetails> loadClipDetails(const std::string& path, const ClipLimits& limits = {});

/// The frame that is shown at a time, counted from the clip's first frame: the last one that has begun by then; the
/// first for earlier times, the last for later ones and for times that are not numeric.
///
/// Colours: the matrix that the clip names (BT.601, BT.709, SMPTE 240M, BT.2020; without a name BT.709 from 720 stored
/// lines on and BT.601 below), full or video range, any depth, to 8 bits. The transfer curve is taken for that of sRGB:
/// clips in HDR come flat. Pixels that are not square are stretched in width. Nothing is deinterlaced.
Result<ClipFrame> loadClipFrame(const std::string& path, const CMTime& time, const ClipLimits& limits = {});

} // namespace lamina
