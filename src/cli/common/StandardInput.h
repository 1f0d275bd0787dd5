#pragma once

#include "platform/base/Result.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lamina {

inline constexpr const char* kStandardInput = "standard input";

/// Reads standard input, whatever it is, from where it stands to its end, for as long as that takes. The error's
/// subject is `kStandardInput`: what can't be read, or holds more than `limit` bytes.
Result<std::vector<std::uint8_t>> readStandardInput(std::size_t limit);

} // namespace lamina
