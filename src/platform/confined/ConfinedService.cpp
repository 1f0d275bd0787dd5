#include "platform/confined/ConfinedService.h"

#include "platform/confined/ConfinedMessages_p.h"
#include "platform/confined/Confinement.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <malloc.h>
#include <new>
#include <optional>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace lamina {

namespace {

using namespace confined;

/// Memory is bounded, so that it is not wasted on stacks and on heaps for each of the codecs' threads.
void saveMemory()
{
    constexpr std::size_t kStack = std::size_t{2} << 20;
    pthread_attr_t attributes;
    if (::pthread_attr_init(&attributes) == 0) {
        ::pthread_attr_setstacksize(&attributes, kStack);
        ::pthread_setattr_default_np(&attributes);
        ::pthread_attr_destroy(&attributes);
    }
    ::mallopt(M_ARENA_MAX, 2);
    std::set_new_handler([] { leaveForWantOfMemory(); });
}

/// All that is mapped, and all of the process's private memory that can be written, as their bounds count them. Asked
/// for before it is confined.
struct OwnMemory {
    std::uint64_t address = 0;
    std::uint64_t data = 0;
};

OwnMemory ownMemory()
{
    unsigned long size = 0;
    unsigned long data = 0;
    std::FILE* const file = std::fopen("/proc/self/statm", "re");
    if (!file)
        return {};
    const bool read = std::fscanf(file, "%lu %*u %*u %*u %*u %lu", &size, &data) == 2;
    std::fclose(file);
    const auto page = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    return read ? OwnMemory{size * page, data * page} : OwnMemory{};
}

bool isSocket(int descriptor)
{
    int type = 0;
    socklen_t size = sizeof(type);
    return ::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_SEQPACKET;
}

/// Who asks may go in the midst of a request, with nobody left to end a codec that never comes back. (The system's own
/// signal for this comes when the thread ends that has started us, and not the program.)
void leaveWithParent()
{
    std::thread([] {
        pollfd connection{kConnection, 0, 0};
        while (::poll(&connection, 1, -1) <= 0) {
        }
        ::_exit(EXIT_SUCCESS);
    }).detach();
}

bool greet(bool confined, const OwnMemory& memory)
{
    const Greeting greeting{ownVersion(), confined ? 1u : 0u, memory.data, memory.address};
    return sendMessage(kConnection, std::as_bytes(std::span(&greeting, 1)));
}

/// False when nobody asks any more.
bool answerNext(const ConfinedService& service)
{
    std::array<std::byte, kLongestMessage> request{};
    std::array<std::byte, kLongestMessage> answer{};
    std::optional<Message> message = receiveMessage(kConnection, request);
    if (!message || message->size == 0)
        return false;
    const std::size_t size = service.answer(std::span(request).first(message->size), message->descriptors, answer);
    message.reset(); // what was sent is closed before the answer says that it is done
    return sendMessage(kConnection, std::span(answer).first(size));
}

/// Waits for the next request, and lets go of memory when it is long in coming; false when there may never be one.
bool awaitRequest(const ConfinedService& service)
{
    constexpr int kRestAfter = 2000; // milliseconds
    constexpr int kLeaveAfter = 30000;
    pollfd connection{kConnection, POLLIN, 0};
    if (::poll(&connection, 1, kRestAfter) != 0)
        return true;
    if (service.rest)
        service.rest();
    ::malloc_trim(0);
    return ::poll(&connection, 1, kLeaveAfter) != 0;
}

} // namespace

void leaveForWantOfMemory()
{
    sendMessage(kConnection, std::span(&kOutOfMemory, 1));
    ::_exit(EXIT_FAILURE);
}

int serveConfined(const ConfinedService& service)
{
    if (!isSocket(kConnection)) {
        std::fputs("this program is started by Lamina\n", stderr);
        return EXIT_FAILURE;
    }
    saveMemory();
    if (service.prepare)
        service.prepare();
    const OwnMemory memory = ownMemory();
    const bool confined = confineProcess(kConnection) != Confinement::None;
    if (!greet(confined, memory) || !confined)
        return EXIT_FAILURE;
    try {
        leaveWithParent();
    } catch (const std::system_error&) { // no thread is to be had: who asks ends us
    }
    while (awaitRequest(service) && answerNext(service)) {
    }
    ::_exit(EXIT_SUCCESS); // without the ends of libraries, which may wait for threads of theirs
}

} // namespace lamina
