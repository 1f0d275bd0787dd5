#pragma once

#include "platform/base/Result.h"

#include <cstdint>
#include <vector>

namespace lamina {

/// The file of Liberation Sans Bold: from the folder that the variable LAMINA_FONTS of the environment names, else from
/// the user's folders for fonts and the system's, in which it may lie as deep as packages put it. The error's subject
/// is the file, or empty where there is none.
Result<std::vector<std::uint8_t>> readNoteFont();

} // namespace lamina
