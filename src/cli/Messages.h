#pragma once

#include "cli/ExitCode.h"
#include "platform/base/Result.h"

#include <string>

namespace lamina {

/// Prints "lamina: SUBJECT: CAUSE" to standard error and returns `code`. Control characters in a file's name are shown as
/// '?', so that the message stays one line.
ExitCode fail(const Error& error, ExitCode code);

/// Prints a note to standard error where that is a terminal; a script sees nothing.
void note(const std::string& text);

} // namespace lamina
