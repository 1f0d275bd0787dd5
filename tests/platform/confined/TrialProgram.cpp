// A confined program that does what it is asked to try.

#include "Trials.h"

#include "platform/confined/ConfinedService.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <map>
#include <netinet/in.h>
#include <pthread.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options()
{
    return "detect_leaks=0";
}
#endif

namespace lamina::test {
namespace {

long connectBy(int family)
{
    const int socket = ::socket(family, SOCK_STREAM, 0);
    sockaddr_storage address{};
    address.ss_family = static_cast<sa_family_t>(family);
    return ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(sockaddr_un));
}

long exec()
{
    char name[] = "/bin/true";
    char* const arguments[] = {name, nullptr};
    return ::execv(name, arguments);
}

long readMemoryOf(pid_t other)
{
    char byte = 0;
    const iovec ours{&byte, 1};
    const iovec theirs{reinterpret_cast<void*>(0x1000), 1};
    return ::process_vm_readv(other, &ours, 1, &theirs, 1, 0);
}

long map(std::size_t size, int protection, int flags)
{
    return ::mmap(nullptr, size, protection, flags | MAP_ANONYMOUS, -1, 0) == MAP_FAILED ? -1 : 0;
}

/// Good where no bound ends it within a day.
long liveForEver()
{
    rlimit limits{};
    ::getrlimit(RLIMIT_CPU, &limits);
    errno = EPERM;
    return limits.rlim_max < 24 * 3600 ? -1 : 0;
}

/// With stacks so small that the bound of memory allows them.
long manyThreads()
{
    constexpr int kMany = 1000;
    pthread_attr_t attributes;
    ::pthread_attr_init(&attributes);
    ::pthread_attr_setstacksize(&attributes, std::size_t{32} << 10);
    const auto sleep = [](void*) -> void* {
        std::this_thread::sleep_for(std::chrono::hours(1));
        return nullptr;
    };
    for (int i = 0; i < kMany; ++i) {
        pthread_t thread{};
        errno = ::pthread_create(&thread, &attributes, sleep, nullptr);
        if (errno != 0)
            return -1;
    }
    sleep(nullptr);
    return 0;
}

long raiseBound()
{
    const rlimit limits{RLIM_INFINITY, RLIM_INFINITY};
    return ::setrlimit(RLIMIT_DATA, &limits);
}

/// In pieces, as codecs do, each of them used.
long allocate(std::uint64_t amount)
{
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    for (std::uint64_t taken = 0; taken < amount; taken += kPiece)
        std::memset(new char[kPiece], 1, kPiece);
    return 0;
}

long inThread()
{
    long made = -1;
    std::thread([&made] { made = 0; }).join();
    return made;
}

long spin()
{
    for (std::atomic<long> turns = 0;; ++turns) {
    }
}

long sleepOn()
{
    std::this_thread::sleep_for(std::chrono::hours(1));
    return 0;
}

int tried(const TrialRequest& request, std::span<FileDescriptor> descriptors)
{
    const int input = descriptors.empty() ? -1 : descriptors[0].get();
    struct stat status {};
    const std::map<std::string_view, std::function<long()>> trials{
        {"nothing", [] { return 0; }},
        {"answer in one byte", [] { return 0; }},
        {"open a file", [] { return ::open("/etc/passwd", O_RDONLY); }},
        {"stat a file", [&] { return ::stat("/etc/passwd", &status); }},
        {"connect by net", [] { return connectBy(AF_INET); }},
        {"connect by file", [] { return connectBy(AF_UNIX); }},
        {"fork", [] { return ::fork(); }},
        {"vfork", [] { return ::vfork(); }},
        {"exec", exec},
        {"signal the parent", [&] { return ::kill(request.parent, SIGTERM); }},
        {"read the parent's memory", [&] { return readMemoryOf(request.parent); }},
        {"write over the input", [&] { return ::pwrite(input, "x", 1, 0) == 1 ? 0 : ::write(input, "x", 1); }},
        {"map code", [] { return map(4096, PROT_READ | PROT_EXEC, MAP_PRIVATE); }},
        {"map what is shared", [] { return map(4096, PROT_READ | PROT_WRITE, MAP_SHARED); }},
        {"map what grows", [] { return map(4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_GROWSDOWN); }},
        {"map far more", [] { return map(std::size_t{1} << 40, PROT_READ, MAP_PRIVATE | MAP_NORESERVE); }},
        {"live for ever", liveForEver},
        {"make many threads", manyThreads},
        {"raise the bound", raiseBound},
        {"make a thread", inThread},
        {"allocate", [&] { return allocate(request.amount); }},
        {"spin", spin},
        {"sleep", sleepOn},
        {"die", []() -> long { std::abort(); }},
    };
    const auto trial = trials.find(request.name.data());
    if (trial == trials.end())
        return -1; // not by an exception, which would look as if it had been stopped
    return trial->second() < 0 ? errno : 0;
}

std::size_t answer(std::span<const std::byte> bytes, std::span<FileDescriptor> descriptors, std::span<std::byte> target)
{
    TrialRequest request;
    std::memcpy(&request, bytes.data(), sizeof(request));
    const TrialAnswer answer{tried(request, descriptors)};
    std::memcpy(target.data(), &answer, sizeof(answer));
    return std::string_view(request.name.data()) == "answer in one byte" ? 1 : sizeof(answer);
}

} // namespace
} // namespace lamina::test

int main()
{
    return lamina::serveConfined({{}, lamina::test::answer, {}});
}
