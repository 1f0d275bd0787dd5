#pragma once

namespace lamina {

/// What the command tells the shell.
enum class ExitCode : int {
    Good = 0,
    Failed = 1,
    Usage = 2,  ///< wrong options or arguments
    Input = 3,  ///< an input is missing, unreadable or unsupported
    Output = 4, ///< an output can't be written
    Interrupted = 130,
};

} // namespace lamina
