#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/CGColorSpace.h"

#include <cstdint>
#include <vector>

// The condition for which pictures are prepared for print: offset on coated paper, FOGRA39, with at most 300 % ink. Its
// ICC profile is installed with the program, or stands in the folder that LAMINA_PROFILES of the environment names;
// "the colour profile for print is not installed" is the error where it is missing. Usable from any thread.

namespace lamina {

/// The name of the condition in the registry of characterizations at www.color.org.
inline constexpr const char* kPrintCondition = "FOGRA39";

/// CMYK with the condition's profile.
Result<CGColorSpace> printColorSpace();

/// The same profile as a zlib stream, which is how a PDF holds it.
Result<std::vector<std::uint8_t>> compressedPrintProfile();

} // namespace lamina
