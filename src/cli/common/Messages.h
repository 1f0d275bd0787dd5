#pragma once

#include "cli/common/ExitCode.h"
#include "platform/base/Result.h"

#include <string>
#include <string_view>

namespace lamina {

/// Prints "lamina: SUBJECT: CAUSE" to standard error and returns `code`. It stays one line of some length, whatever
/// names and texts are in it: see `shownText`.
ExitCode fail(const Error& error, ExitCode code);

/// Prints a note to standard error where that is a terminal; a script sees nothing.
void note(const std::string& text);

/// Prints "lamina: SUBJECT: CAUSE" to standard error, for what a script should know of too, although the work is done.
void warn(const Error& warning);

/// Writes to standard output what was asked for.
ExitCode printData(const std::string& text);

/// Writes what is wrong with a command line, and which help tells how it is right: `command`'s, or that of all where it
/// is empty.
ExitCode failUsage(const std::string& cause, const std::string& command);

/// Enough of a text to be recognised: a message is a line, whatever was pasted. Cut between characters.
std::string beginning(std::string_view text);

} // namespace lamina
