#pragma once

namespace lamina {

/// Ctrl+C, a closed terminal or a request to end stop the command at once with exit code 130, and nothing half-written
/// stays behind; those that whoever started the command has it ignore, as nohup does, stay ignored. A reader of
/// standard output that goes away is seen as a failed write instead of ending the process.
void installInterruptionHandlers();

} // namespace lamina
