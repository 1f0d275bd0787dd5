#pragma once

#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelConversion.h"

namespace lamina {

/// Whether every pixel that `rows` gives of the picture is opaque. Looks no further than the first that isn't; rows are
/// read on the worker pool. Usable from any thread.
bool isOpaque(const CGImage& image, const RowConverter& rows);

/// Whether the picture's rows are R G B and a byte that means nothing, 8 bits each, in sRGB and without a mask: what
/// wants opaque rows can read them as they lie in memory. Usable from any thread.
bool hasPlainRows(const CGImage& image);

} // namespace lamina
