#pragma once

#include "platform/base/Result.h"
#include "platform/photos/PHAsset.h"

#include <string>

namespace lamina {

/// Copies a picture's file into the photo library, byte for byte, and gives the new asset. The error's subject is the
/// path where that can't be read or is no picture, else what could not be written. Main thread only.
Result<PHAsset> importPhoto(const std::string& path);

} // namespace lamina
