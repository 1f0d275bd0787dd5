#pragma once

#include <QSocketNotifier>

namespace lamina {

/// Turns the first SIGTERM, SIGHUP or SIGINT into a request to leave, so that the application leaves by the way it
/// always does; a second one ends the process at once. One that was ignored when this is made, as nohup has it, stays
/// ignored. One a process, on the thread of the event loop, while there is a QCoreApplication.
class TerminationSignals {
public:
    TerminationSignals();
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    struct Pipe {
        Pipe();
        int ends[2];
    };
    Pipe m_pipe;
    QSocketNotifier m_notifier;
};

} // namespace lamina
