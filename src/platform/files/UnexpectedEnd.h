#pragma once

#include <functional>
#include <string>

namespace lamina {

/// What `work`, all that a program does, gives as its exit code; where an exception leaves it, "PROGRAM: cause" on
/// standard error, and 1.
int withoutExceptions(const std::string& program, const std::function<int()>& work);

/// The last nets of a program: where an exception finds nobody, in whichever thread, and `catchesAborts`, where a
/// library gives up and aborts, one line is said, nothing half-written stays behind, and the program ends with 1.
/// Debuggers and sanitizers want to see an abort themselves. `program` is the line's beginning; it lives as long as the
/// process.
void installLastNets(const char* program, bool catchesAborts);

} // namespace lamina
