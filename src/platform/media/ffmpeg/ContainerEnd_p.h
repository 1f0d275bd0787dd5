#pragma once

#include <cstdint>
#include <string_view>

namespace lamina {

/// Whether a file ends within a piece that its container says is longer: then it was cut off, whatever its tracks tell
/// of their lengths. `container`: FFmpeg's names of it. Looks at MP4 and its kin, Matroska and transport streams; false
/// of others, and where the pieces make no sense.
bool endsWithinPiece(int descriptor, std::int64_t size, std::string_view container);

} // namespace lamina
