#pragma once

#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/image/pixels/YCbCrKernels.h"
#include "platform/media/CVPixelBuffer.h"

namespace lamina {

/// Of ITU-R BT.601, BT.709, BT.2020 or SMPTE 240M; 601 where there is none.
YCbCrWeights weightsOf(YCbCrMatrix matrix, bool isFullRange);

/// The frame as an opaque picture, 8 bits RGBA. Y, Cb and Cr by the frame's matrix (601 where it tells none) and its
/// levels, to a step, chroma taken from the nearest. Empty when memory is short, and of `AsDecoded`.
CGImage imageOfPixelBuffer(const CVPixelBuffer& frame);

/// How a picture of a camera's frames is tagged so that it is upright: `rotation` in degrees clockwise, mirrored or
/// not.
UIImageOrientation orientationOfFrames(int rotation, bool mirrored);

} // namespace lamina
