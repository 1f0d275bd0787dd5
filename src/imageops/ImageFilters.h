#pragma once

#include "platform/image/pixels/UIImage.h"

namespace lamina {

// New pixel values for pictures, on the CPU.
//
// Rules common to all but `grayscale`, `autoEnhance` and `redEyeCorrection`. The picture that goes in is never changed.
// It is drawn over a surface of its size in *points*, each side truncated, without regard to its orientation: a picture
// of scale 2 is worked on at half its resolution, and what comes out is that much smaller.
//
// The surface is A R G B of 8 bits in device RGB, premultiplied when the source's alpha info is 1 to 4, with a skipped
// first byte otherwise. Filters compute on these premultiplied bytes and don't hold colours below their alpha: whoever
// draws the result clips.
//
// No result, the empty picture, comes of: no picture, an argument that is not finite, a size below one pixel, longer
// than 2^18 pixels on a side or above 2^27 pixels, and memory that runs short. The same input gives the same bytes on
// every processor and with any number of threads. Any thread; large pictures are split over the worker pool.

// Point operations: red, green and blue, each by itself, in single precision, clipped to 0 to 255, the fraction cut
// off. Alpha stays.

/// out = in + value. Keeps scale and orientation.
UIImage brightenWithValue(const UIImage& image, float value);

/// out = (in - 128) · f + 128,   f = ((value + 255) · 259) / ((259 - value) · 255)
///
/// Meant for -255 (flat grey) to 255; 0 changes nothing. Towards 259 f grows without bound, which leaves 0, 128 and
/// 255; beyond it f is negative. Keeps scale and orientation.
UIImage contrastAdjustmentWithValue(const UIImage& image, float value);

/// out = 255 · (in / 255)^value. Below 1 brightens, above 1 darkens. Scale 1, upright.
UIImage gammaCorrectionWithValue(const UIImage& image, float value);

/// out = 255 - in. Scale 1, upright.
UIImage invert(const UIImage& image);

/// Brown tones: a matrix on R, G, B, in single precision, cut as the point operations. Keeps scale and orientation.
///
///   red = 0.393 R + 0.769 G + 0.189 B,   green = 0.349 R + 0.686 G + 0.168 B,   blue = 0.272 R + 0.534 G + 0.131 B
UIImage sepia(const UIImage& image);

// Convolutions, computed in whole numbers. The first row of a kernel weighs the row above, its first column the pixel
// to the left. Scale 1, upright.

/// Eight times a colour less its eight neighbours, clipped: flat parts turn black, and so does the outermost ring of
/// pixels. Alpha stays. `bias` plays no part.
UIImage edgeDetectionWithBias(const UIImage& image, long bias);

// The rest work on all four channels, alpha too:
//
//   out = clip(sum / divisor + bias)
//
// with a whole-number division that cuts the fraction off towards zero. Pixels so near the border that the kernel
// reaches beyond the picture stay as they are.

/// -2 0 0 / 0 1 0 / 0 0 2: light from the bottom right.
UIImage embossWithBias(const UIImage& image, long bias);

/// 9 in the middle, -1 around.
UIImage sharpenWithBias(const UIImage& image, long bias);

/// 17 in the middle, -1 around, divided by 9: a softer sharpening.
UIImage unsharpenWithBias(const UIImage& image, long bias);

/// 1 4 6 4 1 times itself, divided by 256. Logs `bias` for debugging.
UIImage gaussianBlurWithBias(const UIImage& image, long bias);

/// All four channels times `alpha`, cut to [0, 1], rounded to the nearest. Always with alpha. Scale 1, upright.
UIImage opacity(const UIImage& image, float alpha);

/// Shades of grey: the picture drawn in device grey over black, seen through its own coverage as a mask. What is
/// clear stays clear; a translucent edge is darkened by the black beneath it. The size is that of the shown picture
/// in *pixels* (points times scale, truncated), the stored pixels are stretched over it. A grey row takes three times
/// the bytes it needs. Keeps scale and orientation.
UIImage grayscale(const UIImage& image);

/// The picture itself: this platform has no automatic adjustments.
UIImage autoEnhance(const UIImage& image);
/// The picture itself, as `autoEnhance`.
UIImage redEyeCorrection(const UIImage& image);

} // namespace lamina
