#include "platform/files/FileReading.h"

#include "platform/files/FileCauses.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace lamina {

Result<OpenedFile> openFileForReading(const std::string& path)
{
    // A path with a zero byte would open another file than it shows.
    if (path.find('\0') != std::string::npos)
        return Error{path, cause::kNoSuchFile};
    // Without O_NONBLOCK a pipe that nobody writes to would hold us here for ever.
    FileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (descriptor.get() < 0)
        return Error{path, readingFailure(errno)};
    struct stat status {};
    if (::fstat(descriptor.get(), &status) != 0)
        return Error{path, readingFailure(errno)};
    if (S_ISDIR(status.st_mode))
        return Error{path, cause::kIsFolder};
    if (!S_ISREG(status.st_mode))
        return Error{path, cause::kNotRegular};
    return OpenedFile{std::move(descriptor), static_cast<std::uint64_t>(status.st_size)};
}

Result<std::vector<std::uint8_t>> readSmallFile(const std::string& path, std::size_t limit)
{
    const Result<OpenedFile> file = openFileForReading(path);
    if (!file)
        return file.error();
    if (file->size > limit)
        return Error{path, "the file is too large"};
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file->size));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t got = ::read(file->descriptor.get(), bytes.data() + done, bytes.size() - done);
        if (got < 0 && errno != EINTR)
            return Error{path, readingFailure(errno)};
        if (got == 0)
            bytes.resize(done); // it has shrunk meanwhile
        done += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    return bytes;
}

} // namespace lamina
