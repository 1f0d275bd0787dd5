#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/pixels/UIImage.h"

#include <string_view>

// What all exporters do with pictures. Contexts have the main screen's scale: a picture of one pixel a point becomes
// so many times as large. Usable from any thread.

namespace lamina {

/// The picture, upright, drawn smaller or larger with its proportions kept, on clear ground. A picture that is at least
/// as high as it is wide becomes `targetWidth` points wide, a wider one `targetHeight` points high; the other number
/// does not count. A picture whose pixels stay as they are keeps them, and is not drawn. Empty when there is no
/// picture, the size is not possible or memory is short.
UIImage scaleImageToFit(const UIImage& image, double targetWidth, double targetHeight);

/// The pixels that such a picture has; 0 x 0 where there will be none.
IntSize pixelsToFit(const UIImage& image, double targetWidth, double targetHeight);

/// The colour of "#rrggbb" or "rrggbb" with this alpha, as hexadecimal numbers are scanned: blanks and "0x" in front
/// are passed over and what follows the digits is not looked at; of a longer number the last six digits count. Black
/// with this alpha where there is no number.
UIColor colorFromHex(std::string_view text, double alpha);

/// The picture with its pixels turned so that its orientation is up; itself when it is. Empty when there is no picture
/// or memory is short.
UIImage normalizedOrientationImage(const UIImage& image);

/// The picture, upright, drawn into `rect` of a context of `size` points that is filled with `ground`. A picture whose
/// pixels stay as they are keeps them, and is not drawn. Empty as above.
UIImage redrawn(const UIImage& image, CGSize size, const CGRect& rect, const UIColor& ground);

} // namespace lamina
