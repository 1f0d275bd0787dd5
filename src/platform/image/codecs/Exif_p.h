#pragma once

#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <span>

namespace lamina {

/// The orientation tag of an EXIF block, which may begin with "Exif\0\0" or with its TIFF header. Upright when the
/// block is empty or damaged or says nothing.
UIImageOrientation exifOrientation(std::span<const std::uint8_t> block);

} // namespace lamina
