#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/media/AVAsset.h"
#include "platform/media/CVPixelBuffer.h"

#include <cstddef>
#include <memory>

namespace lamina {

/// A frame of BGRA turned upright and scaled, as large as it fits, into the middle of `size` on black; the frame itself
/// where that is what it is. Null when memory is short or a side is not positive.
std::shared_ptr<CVPixelBuffer> laidOut(const std::shared_ptr<CVPixelBuffer>& frame, const AVTrackTransform& transform,
                                       IntSize size);

/// Bytes that a frame's pixels take; 0 of no frame.
std::size_t bytesOf(const std::shared_ptr<CVPixelBuffer>& frame);

} // namespace lamina
