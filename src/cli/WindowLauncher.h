#pragma once

#include "cli/common/ExitCode.h"

#include <string>
#include <vector>

namespace lamina {

/// Becomes the application with the window, `lamina-app`, with these arguments: the one beside this program, else the
/// first in PATH. Returns only when there is none, with the reason on standard error.
ExitCode becomeWindow(const std::vector<std::string>& arguments);

} // namespace lamina
