#pragma once

#include "platform/base/Result.h"
#include "platform/image/CGImage.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// A PNG file of the picture, with an embedded sRGB profile. Pixels of any layout are converted to 8-bit sRGB with straight
/// alpha; alpha is left out when every pixel is opaque. A grey picture stays grey. The same pixels give the same bytes.
/// Fails with the given subject when the picture is empty or memory is short. Usable from any thread.
Result<std::vector<std::uint8_t>> encodePNG(const CGImage& image, const std::string& subject);

/// Writes the whole file or nothing: a temporary name in the target folder, then a rename. An existing file keeps its
/// contents on failure and its permissions on success; a symbolic link stays one and its target is replaced. The error's
/// subject is the path. Usable from any thread.
Outcome writeFileAtomically(const std::string& path, std::span<const std::uint8_t> bytes);

} // namespace lamina
