#pragma once

namespace lamina {

/// What stands between a process and the system.
enum class Confinement {
    None,     ///< the kernel offers no filter of calls: whoever asked should not go on
    Filtered, ///< calls are filtered
    Enclosed, ///< and files and networks are out of reach by a second means (landlock)
};

/// Gives up, for good and for the whole process, files, networks, other programs and processes, and core dumps; over
/// `connection`, a socket, messages may go on. To be called by a process of one thread that has loaded all that it will
/// ever need from files; threads may be made afterwards. What is tried later fails, or ends the process where only an
/// intruder would try it.
Confinement confineProcess(int connection);

} // namespace lamina
