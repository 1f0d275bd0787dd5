#pragma once

namespace lamina {

/// Ctrl+C, a closed terminal or a request to end stop the command at once with exit code 130, and nothing half-written
/// stays behind; those that whoever started the command has it ignore, as nohup does, stay ignored. A reader of
/// standard output that goes away is seen as a failed write instead of ending the process.
void installInterruptionHandlers();

/// For work that such a request ends as it should end: as long as this lives the first ones are only counted, and who
/// works asks how many there were. The third stops the command after all. One at a time.
class Interruptions {
public:
    Interruptions();
    ~Interruptions();
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;

    /// How often the command was asked to end since this was made.
    int count() const;
};

} // namespace lamina
