#include "cli/common/StandardInput.h"

#include "platform/base/Causes.h"
#include "platform/files/FileCauses.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <poll.h>
#include <unistd.h>

namespace lamina {

namespace {

/// Makes room for more without holding much twice: the last step takes addresses alone, which become memory as they are
/// written to.
void makeRoom(std::vector<std::uint8_t>& bytes, std::size_t limit)
{
    constexpr std::size_t kFirst = std::size_t{1} << 20;
    constexpr std::size_t kGrowth = 16;
    if (bytes.size() == bytes.capacity())
        bytes.reserve(std::clamp(kGrowth * bytes.size(), kFirst, limit));
    bytes.resize(std::min(bytes.capacity(), bytes.size() + kFirst));
}

/// What `read` gives, also where whoever shares the pipe has it not wait.
ssize_t readSome(std::uint8_t* bytes, std::size_t count)
{
    for (;;) {
        const ssize_t got = ::read(STDIN_FILENO, bytes, count);
        if (got >= 0 || (errno != EINTR && errno != EAGAIN))
            return got;
        pollfd input{STDIN_FILENO, POLLIN, 0};
        if (errno == EAGAIN)
            ::poll(&input, 1, -1);
    }
}

} // namespace

Result<std::vector<std::uint8_t>> readStandardInput(std::size_t limit)
try {
    std::vector<std::uint8_t> bytes;
    std::size_t used = 0;
    for (;;) {
        if (used == limit)
            return Error{kStandardInput, cause::kTooLarge};
        if (used == bytes.size())
            makeRoom(bytes, limit);
        const ssize_t got = readSome(bytes.data() + used, bytes.size() - used);
        if (got < 0)
            return Error{kStandardInput, readingFailure(errno)};
        if (got == 0)
            break;
        used += static_cast<std::size_t>(got);
    }
    bytes.resize(used);
    return bytes;
} catch (const std::bad_alloc&) {
    return Error{kStandardInput, cause::kNoMemory};
}

} // namespace lamina
