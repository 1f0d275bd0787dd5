#pragma once

#include "platform/image/CGImage.h"

namespace lamina {

/// True when `movedPixels` takes the picture: four bytes of RGB a pixel, no mask.
bool canMovePixels(const CGImage& image);

/// Mirrors a picture, then turns it counter-clockwise by `quarters` (any number), by moving whole pixels. The layout
/// stays, with rows without padding, but where the source has no alpha the skipped byte becomes 255 and counts as
/// premultiplied alpha. `canMovePixels` must be true. Empty when memory is short.
CGImage movedPixels(const CGImage& image, int quarters, bool mirrorX, bool mirrorY);

} // namespace lamina
