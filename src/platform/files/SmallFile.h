#pragma once

#include "platform/base/Result.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lamina {

/// The bytes of a file that is small by its nature: a list of settings, a curve. Links and pipes are followed. The
/// error's subject is the path; its cause is that of `FileCauses.h`, or "the file is too large" beyond `mostBytes`.
/// Blocks while it reads; from any thread.
Result<std::vector<std::uint8_t>> readSmallFile(const std::string& path, std::size_t mostBytes);

} // namespace lamina
