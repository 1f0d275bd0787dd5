#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/PixelBuffer.h"

namespace lamina {

/// Standard deviations above this, in pixels, count as this: the room around what is blurred grows with them.
inline constexpr double kLargestSigma = 256;

/// How far, in pixels, a blur carries anything that is seen: beyond three standard deviations less than 1/255 is left.
/// Wide blurs reach some of their steps further.
int blurReach(double sigma);

/// Wide blurs are made on a picture this many times smaller. What is blurred in parts must begin at a multiple of it,
/// counted from one place for all parts, to get the bytes of the whole.
int blurStep(double sigma);

/// Blurs bytes in place by the Gaussian of standard deviation `sigma` pixels, what lies outside counting as 0. The
/// kernel is cut at its reach and its sum is 1. Rows lie without padding. False when memory is short, with the bytes as
/// they were.
bool blurGaussian(PixelBuffer& bytes, IntSize size, double sigma);

} // namespace lamina
