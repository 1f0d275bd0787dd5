#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <string>

namespace lamina {

/// The picture at `path` ("-": standard input), turned upright, in sRGB. `shortSide` as in `DecodeOptions`.
Result<UIImage> readPicture(const std::string& path, int shortSide);

} // namespace lamina
