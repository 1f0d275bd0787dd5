#pragma once

#include "platform/base/Result.h"
#include "platform/image/UIImage.h"

#include <string>

namespace lamina {

/// Why nothing could be written to `path` by its name alone, before any work is done: an extension that is not known.
/// Success for "-" and for names that end in ".png", in any case of letters.
Outcome checkOutputName(const std::string& path);

/// Writes the picture as PNG to `path`, whole or not at all, or to standard output for "-".
Outcome writePicture(const UIImage& picture, const std::string& path);

} // namespace lamina
