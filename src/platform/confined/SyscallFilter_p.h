#pragma once

namespace lamina {

/// Leaves this process, all its threads and for good, with the calls of the kernel that computing takes: memory,
/// threads, clocks, reading descriptors that it was sent, and messages over the descriptor `connection`. Text may still
/// go to standard error. Opening a file fails; what only an intruder would try (programs, processes, sockets, other
/// processes' memory) ends the process. False where the kernel knows no filters, or the processor isn't known here.
bool filterSyscalls(int connection);

} // namespace lamina
