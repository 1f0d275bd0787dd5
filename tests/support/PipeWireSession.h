#pragma once

#include "CommandRunner.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace lamina::test {

/// A PipeWire of its own with who links its nodes, away from the machine's: in a folder of its own, without devices, on
/// no bus. While it lives this process and those that it starts find it as theirs.
class PipeWireSession {
public:
    /// What stands in it from the beginning.
    enum Nodes : unsigned {
        Nothing = 0,
        Camera = 1,     ///< "test-camera", called "Test camera": a chart in RGB and UYVY that moves
        Microphone = 2, ///< "test-microphone", called "Test microphone": a tone in two channels
    };
    /// Starts, and waits for the service but not for the linking.
    explicit PipeWireSession(unsigned nodes = Camera | Microphone);
    /// Ends all of it.
    ~PipeWireSession();
    PipeWireSession(const PipeWireSession&) = delete;
    PipeWireSession& operator=(const PipeWireSession&) = delete;

    /// Whether the service answers.
    bool runs() const;
    /// The service is gone, at once, as if it had crashed.
    void stop();
    /// Starts it anew; nothing while it runs.
    void start();
    /// A socket that is connected to the service, as a portal hands it out; the caller's. -1: it doesn't run.
    int connectedSocket() const;

private:
    pid_t launch(const std::vector<std::string>& words) const;

    TemporaryFolder m_folder;
    std::vector<std::string> m_environment;
    std::vector<pid_t> m_processes;
};

} // namespace lamina::test
