#pragma once

#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelConversion.h"

namespace lamina {

/// Whether every pixel that `rows` gives of the picture is opaque. Looks no further than the first that isn't; rows are
/// read on the worker pool. Usable from any thread.
bool isOpaque(const CGImage& image, const RowConverter& rows);

} // namespace lamina
