#include "platform/confined/SharedMemory.h"

#include "platform/base/Causes.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileSizeSignal.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#ifndef MFD_NOEXEC_SEAL // newer than some systems' headers
#define MFD_NOEXEC_SEAL 0x0008U
#endif

namespace lamina {

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 20;

/// Newer kernels want to be told that nobody means to run it; older ones don't know the word.
int memoryFile()
{
    const int descriptor = ::memfd_create("lamina", MFD_CLOEXEC | MFD_ALLOW_SEALING | MFD_NOEXEC_SEAL);
    return descriptor < 0 && errno == EINVAL ? ::memfd_create("lamina", MFD_CLOEXEC | MFD_ALLOW_SEALING) : descriptor;
}

bool seal(int descriptor, int seals)
{
    return ::fcntl(descriptor, F_ADD_SEALS, seals) == 0;
}

/// Such memory counts as a file, also where a process's files are bounded.
Error failure()
{
    switch (errno) {
    case EMFILE:
    case ENFILE:
        return {{}, readingFailure(errno)};
    case EFBIG:
        return {{}, "the limit for the size of files (ulimit -f) is too small for it"};
    default:
        return {{}, cause::kNoMemory};
    }
}

/// All of it; false with errno where memory is short.
bool write(int descriptor, std::uint64_t offset, std::span<const std::uint8_t> bytes)
{
    while (!bytes.empty()) {
        const ssize_t done = ::pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (done < 0 && errno == EINTR)
            continue;
        if (done <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(done));
        offset += static_cast<std::uint64_t>(done);
    }
    return true;
}

} // namespace

Result<SharedMemory> SharedMemory::make(std::size_t size)
{
    const FileSizeSignalBlocker blocker;
    SharedMemory memory(FileDescriptor(memoryFile()), size);
    if (memory.descriptor() < 0 || ::ftruncate(memory.descriptor(), static_cast<off_t>(size)) != 0 ||
        !seal(memory.descriptor(), F_SEAL_SHRINK | F_SEAL_GROW))
        return failure();
    return memory;
}

Result<SharedMemory>
SharedMemory::filled(std::size_t size,
                     const std::function<std::size_t(std::uint64_t offset, std::span<std::uint8_t> target)>& fill)
{
    Result<SharedMemory> memory = make(size);
    if (!memory)
        return memory.error();
    std::vector<std::uint8_t> piece(std::min(size, kPiece));
    for (std::uint64_t offset = 0; offset < size;) {
        const std::span wanted = std::span(piece).first(std::min<std::size_t>(piece.size(), size - offset));
        const std::size_t got = fill(offset, wanted);
        if (!write(memory->descriptor(), offset, wanted.first(got)))
            return failure();
        if (got < wanted.size())
            break;
        offset += got;
    }
    if (!seal(memory->descriptor(), F_SEAL_WRITE | F_SEAL_SEAL))
        return failure();
    return memory;
}

std::shared_ptr<const std::uint8_t> SharedMemory::freeze(std::size_t used)
{
    if (used == 0 || used > m_size || !seal(descriptor(), F_SEAL_WRITE | F_SEAL_SEAL))
        return nullptr;
    // Private, since older kernels refuse shared mappings of what is sealed, even those for reading.
    void* const memory = ::mmap(nullptr, used, PROT_READ, MAP_PRIVATE | MAP_POPULATE, descriptor(), 0);
    if (memory == MAP_FAILED)
        return nullptr;
    return {static_cast<const std::uint8_t*>(memory),
            [used](const std::uint8_t* bytes) { ::munmap(const_cast<std::uint8_t*>(bytes), used); }};
}

std::uint8_t* mapForWriting(int descriptor, std::size_t size)
{
    void* const memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<std::uint8_t*>(memory);
}

void unmap(std::uint8_t* bytes, std::size_t size)
{
    ::munmap(bytes, size);
}

} // namespace lamina
