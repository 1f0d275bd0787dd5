#include "CommandRunner.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sched.h>
#include <sstream>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lamina::test {

namespace {

struct Pipe {
    int read = -1;
    int write = -1;
    Pipe()
    {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        read = ends[0];
        write = ends[1];
    }
    ~Pipe()
    {
        closeRead();
        closeWrite();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    void closeRead() { closeEnd(read); }
    void closeWrite() { closeEnd(write); }

private:
    static void closeEnd(int& end)
    {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
};

[[noreturn]] void becomeProgram(const std::string& program, const std::vector<std::string>& arguments,
                                const CommandOptions& options, const Pipe& in, const Pipe& out, const Pipe& err)
{
    ::dup2(in.read, STDIN_FILENO);
    ::dup2(out.write, STDOUT_FILENO);
    ::dup2(err.write, STDERR_FILENO);
    std::signal(SIGINT, SIG_DFL); // whoever runs tests in the background ignores it, and so would the command
    if (options.fileSizeLimit) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{*options.fileSizeLimit, *options.fileSizeLimit};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    if (options.cores) {
        cpu_set_t set;
        CPU_ZERO(&set);
        for (int i = 0; i < *options.cores; ++i)
            CPU_SET(i, &set);
        ::sched_setaffinity(0, sizeof set, &set);
    }
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    ::execv(program.c_str(), argv.data());
    ::_exit(127);
}

/// Feeds `input` and gathers both outputs at once, so that no side waits for the other.
void exchange(Pipe& in, Pipe& out, Pipe& err, const std::string& input, bool keepInputOpen, CommandResult& result)
{
    std::size_t fed = 0;
    if (input.empty() && !keepInputOpen)
        in.closeWrite();
    ::fcntl(in.write, F_SETFL, O_NONBLOCK);
    while (out.read >= 0 || err.read >= 0) {
        pollfd ends[3] = {
            {out.read, POLLIN, 0}, {err.read, POLLIN, 0}, {fed < input.size() ? in.write : -1, POLLOUT, 0}};
        ::poll(ends, 3, -1);
        char buffer[65536];
        if (ends[0].revents != 0) {
            const ssize_t got = ::read(out.read, buffer, sizeof buffer);
            got > 0 ? void(result.output.append(buffer, static_cast<std::size_t>(got))) : out.closeRead();
        }
        if (ends[1].revents != 0) {
            const ssize_t got = ::read(err.read, buffer, sizeof buffer);
            got > 0 ? void(result.errors.append(buffer, static_cast<std::size_t>(got))) : err.closeRead();
        }
        if (ends[2].revents != 0) {
            const ssize_t put = ::write(in.write, input.data() + fed, input.size() - fed);
            fed = put > 0 ? fed + static_cast<std::size_t>(put) : input.size();
            if (fed == input.size() && !keepInputOpen)
                in.closeWrite();
        }
    }
}

} // namespace

CommandResult runCommand(const std::string& program, const std::vector<std::string>& arguments,
                         const CommandOptions& options)
{
    Pipe in;
    Pipe out;
    Pipe err;
    const pid_t child = ::fork();
    if (child < 0)
        throw std::runtime_error("no process");
    if (child == 0)
        becomeProgram(program, arguments, options, in, out, err);
    in.closeRead();
    out.closeWrite();
    err.closeWrite();
    std::signal(SIGPIPE, SIG_IGN);
    if (options.interruptAfterMs) {
        ::usleep(static_cast<useconds_t>(*options.interruptAfterMs) * 1000);
        ::kill(child, SIGINT);
    }
    CommandResult result;
    exchange(in, out, err, options.input, options.interruptAfterMs.has_value(), result);
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    static_cast<ProcessUsage&>(result) = usageOf(usage);
    return result;
}

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "lamina-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    m_path = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::vector<std::string> TemporaryFolder::names() const
{
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(m_path))
        found.push_back(entry.path().filename().string());
    std::sort(found.begin(), found.end());
    return found;
}

std::string readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void writeFile(const std::string& path, const std::string& content)
{
    std::ofstream(path, std::ios::binary) << content;
}

} // namespace lamina::test
