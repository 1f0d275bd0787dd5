#pragma once

#include "platform/image/pixels/PixelMoves.h"

#include "platform/image/pixels/CGImage.h"

namespace lamina {

/// True when `movedPicture` takes the picture: four bytes of RGB a pixel, no mask.
bool canMovePicture(const CGImage& image);

/// The picture with its pixels moved. The layout stays, with rows without padding, but where the source has no alpha
/// the skipped byte becomes 255 and counts as premultiplied alpha. `canMovePicture` must be true. Empty when memory is
/// short.
CGImage movedPicture(const CGImage& image, const PixelMove& move);

} // namespace lamina
