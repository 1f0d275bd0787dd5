#include "PipeWireSession.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace lamina::test {

namespace {

constexpr const char* kVariable = "PIPEWIRE_RUNTIME_DIR";

/// No more than it takes to serve nodes; nothing that looks for devices, priorities or a bus.
std::string serviceConfiguration(unsigned nodes)
{
    std::string text = R"(
context.properties = { core.daemon = true core.name = pipewire-0 support.dbus = false link.max-buffers = 16 log.level = 0 }
context.spa-libs = {
    audio.convert.* = audioconvert/libspa-audioconvert
    videotestsrc = videotestsrc/libspa-videotestsrc
    audiotestsrc = audiotestsrc/libspa-audiotestsrc
    support.* = support/libspa-support
}
context.modules = [
    { name = libpipewire-module-protocol-native }
    { name = libpipewire-module-metadata }
    { name = libpipewire-module-spa-node-factory }
    { name = libpipewire-module-client-node }
    { name = libpipewire-module-access }
    { name = libpipewire-module-adapter }
    { name = libpipewire-module-link-factory }
    { name = libpipewire-module-session-manager }
]
context.objects = [
    { factory = metadata args = { metadata.name = default } }
    { factory = spa-node-factory args = { factory.name = support.node.driver node.name = Dummy-Driver
        node.group = pipewire.dummy priority.driver = 20000 } }
)";
    if ((nodes & PipeWireSession::Camera) != 0)
        text += R"({ factory = spa-node-factory args = { factory.name = videotestsrc node.name = test-camera
        node.description = "Test camera" media.class = Video/Source media.role = Camera priority.session = 900 } }
)";
    if ((nodes & PipeWireSession::Microphone) != 0)
        text += R"({ factory = adapter args = { factory.name = audiotestsrc node.name = test-microphone
        node.description = "Test microphone" media.class = Audio/Source priority.session = 900 } }
)";
    return text + "]\n";
}

} // namespace

PipeWireSession::PipeWireSession(unsigned nodes)
{
    ::chmod(m_folder.path().c_str(), 0700);
    writeFile(m_folder.path("pipewire.conf"), serviceConfiguration(nodes));
    for (char** variable = environ; *variable; ++variable) {
        const std::string_view text = *variable;
        if (!text.starts_with("DBUS_SESSION_BUS_ADDRESS=") && !text.starts_with("XDG_") && !text.starts_with("HOME=") &&
            !text.starts_with("PIPEWIRE_") && !text.starts_with("WIREPLUMBER_"))
            m_environment.emplace_back(text);
    }
    for (const char* const name : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_STATE_HOME", kVariable})
        m_environment.push_back(name + ("=" + m_folder.path()));
    m_environment.emplace_back("DBUS_SESSION_BUS_ADDRESS=disabled:");
    ::setenv(kVariable, m_folder.path().c_str(), 1);
    start();
}

PipeWireSession::~PipeWireSession()
{
    stop();
    ::unsetenv(kVariable);
}

void PipeWireSession::start()
{
    if (!m_processes.empty())
        return;
    m_processes.push_back(launch({PIPEWIRE, "-c", m_folder.path("pipewire.conf")}));
    constexpr int kTries = 1000;
    for (int i = 0; i < kTries && !runs(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_TRUE(runs()) << "pipewire doesn't start";
    m_processes.push_back(launch({WIREPLUMBER, "-c", "policy.conf"}));
}

void PipeWireSession::stop()
{
    for (const pid_t process : m_processes)
        ::kill(process, SIGKILL);
    for (const pid_t process : m_processes)
        ::waitpid(process, nullptr, 0);
    m_processes.clear();
}

/// It ends with this process, however that ends.
pid_t PipeWireSession::launch(const std::vector<std::string>& words) const
{
    const auto pointers = [](const std::vector<std::string>& texts) {
        std::vector<char*> all;
        for (const std::string& text : texts)
            all.push_back(const_cast<char*>(text.c_str()));
        all.push_back(nullptr);
        return all;
    };
    const std::vector<char*> arguments = pointers(words);
    const std::vector<char*> environment = pointers(m_environment);
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child != 0)
        return child;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(1);
    const int nowhere = ::open("/dev/null", O_RDWR);
    for (const int stream : {0, 1, 2})
        ::dup2(nowhere, stream);
    ::execve(arguments[0], arguments.data(), environment.data());
    ::_exit(127);
}

bool PipeWireSession::runs() const
{
    const int socket = connectedSocket();
    if (socket >= 0)
        ::close(socket);
    return socket >= 0;
}

int PipeWireSession::connectedSocket() const
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const std::string path = m_folder.path("pipewire-0");
    if (path.size() >= sizeof address.sun_path)
        return -1;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return socket;
    ::close(socket);
    return -1;
}

} // namespace lamina::test
