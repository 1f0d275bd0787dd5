#pragma once

namespace lamina {

/// Ctrl+C, a closed terminal or a request to end stop the command at once with exit code 130, and nothing half-written
/// stays behind. A reader of standard output that goes away is seen as a failed write instead of ending the process.
void installInterruptionHandlers();

} // namespace lamina
