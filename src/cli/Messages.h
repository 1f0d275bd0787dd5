#pragma once

#include "cli/ExitCode.h"
#include "platform/base/Result.h"

#include <string>
#include <string_view>

namespace lamina {

/// Prints "lamina: SUBJECT: CAUSE" to standard error and returns `code`. Control characters in a file's name are shown
/// as
/// '?', so that the message stays one line.
ExitCode fail(const Error& error, ExitCode code);

/// Prints a note to standard error where that is a terminal; a script sees nothing.
void note(const std::string& text);

/// Prints "lamina: SUBJECT: CAUSE" to standard error, for what a script should know of too, although the work is done.
void warn(const Error& warning);

/// Writes to standard output what was asked for.
ExitCode printData(const std::string& text);

/// Enough of a text to be recognised: a message is a line, whatever was pasted.
std::string beginning(std::string_view text);

} // namespace lamina
