#include "platform/files/FileReading.h"

#include "platform/base/Deadline.h"
#include "platform/files/FileCauses.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <limits>
#include <poll.h>
#include <sys/stat.h>

namespace lamina {

namespace {

constexpr double kForEver = std::numeric_limits<double>::infinity();

using Bytes = std::vector<std::uint8_t>;

/// Opens anything but a folder, and waits for nobody: a pipe that has no writer would hold us here for ever.
Result<FileDescriptor> openAnything(const std::string& path, struct stat& status)
{
    // A path with a zero byte would open another file than it shows.
    if (path.find('\0') != std::string::npos)
        return Error{path, cause::kNoSuchFile};
    FileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (descriptor.get() < 0 || ::fstat(descriptor.get(), &status) != 0)
        return Error{path, readingFailure(errno)};
    if (S_ISDIR(status.st_mode))
        return Error{path, cause::kIsFolder};
    return descriptor;
}

Result<Bytes> readWhole(const OpenedFile& file, const std::string& path, std::size_t limit)
{
    if (file.size > limit)
        return Error{path, cause::kTooLarge};
    Bytes bytes(static_cast<std::size_t>(file.size));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t got = ::read(file.descriptor.get(), bytes.data() + done, bytes.size() - done);
        if (got < 0 && errno != EINTR)
            return Error{path, readingFailure(errno)};
        if (got == 0)
            bytes.resize(done); // it has shrunk meanwhile
        done += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    return bytes;
}

bool isOver(const Deadline& deadline)
{
    return deadline && std::chrono::steady_clock::now() >= *deadline;
}

/// Waits a moment for something to read, or for the other end to be closed; false when neither came.
bool awaitChange(int descriptor)
{
    constexpr int kMoment = 50; // milliseconds
    pollfd waiting{descriptor, POLLIN, 0};
    return ::poll(&waiting, 1, kMoment) > 0;
}

/// What has come through a pipe, behind what is there: false where nothing has and nobody has it open for writing.
Result<bool> readMore(int descriptor, const std::string& path, Bytes& bytes)
{
    constexpr std::size_t kPiece = std::size_t{1} << 16;
    const std::size_t before = bytes.size();
    bytes.resize(before + kPiece);
    const ssize_t got = ::read(descriptor, bytes.data() + before, kPiece);
    const int error = errno;
    bytes.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got < 0 && error != EINTR && error != EAGAIN)
        return Error{path, readingFailure(error)};
    return got != 0;
}

Result<Bytes> readPipe(int descriptor, const std::string& path, std::size_t limit, const PipePatience& patience)
{
    const Deadline writer = deadlineAfter(patience.writer);
    const Deadline whole = deadlineAfter(patience.whole);
    Bytes bytes;
    bool hasHadWriter = false;
    for (;;) {
        const bool isTold = awaitChange(descriptor); // of a writer that came and went, too
        const Result<bool> isOpen = readMore(descriptor, path, bytes);
        if (!isOpen)
            return isOpen.error();
        hasHadWriter = hasHadWriter || isTold || *isOpen;
        if (bytes.size() > limit)
            return Error{path, cause::kTooLarge};
        if (hasHadWriter && !*isOpen)
            return bytes;
        if (isOver(hasHadWriter ? whole : writer))
            return Error{path, hasHadWriter ? "is not written to its end" : "nobody writes to it"};
    }
}

} // namespace

Result<OpenedFile> openFileForReading(const std::string& path)
{
    struct stat status {};
    Result<FileDescriptor> descriptor = openAnything(path, status);
    if (!descriptor)
        return descriptor.error();
    if (!S_ISREG(status.st_mode))
        return Error{path, cause::kNotRegular};
    return OpenedFile{std::move(*descriptor), static_cast<std::uint64_t>(status.st_size)};
}

Result<std::vector<std::uint8_t>> readSmallFile(const std::string& path, std::size_t limit)
{
    const Result<OpenedFile> file = openFileForReading(path);
    return file ? readWhole(*file, path, limit) : file.error();
}

Result<std::vector<std::uint8_t>> readSmallInput(const std::string& path, std::size_t limit,
                                                 const PipePatience& patience)
{
    struct stat status {};
    Result<FileDescriptor> descriptor = openAnything(path, status);
    if (!descriptor)
        return descriptor.error();
    if (S_ISREG(status.st_mode))
        return readWhole({std::move(*descriptor), static_cast<std::uint64_t>(status.st_size)}, path, limit);
    if (::isatty(descriptor->get()) != 0)
        return readPipe(descriptor->get(), path, limit, {kForEver, kForEver});
    if (!S_ISFIFO(status.st_mode))
        return Error{path, cause::kNotRegular};
    return readPipe(descriptor->get(), path, limit, patience);
}

} // namespace lamina
