#include "platform/files/FileReading.h"

#include "platform/files/FileCauses.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace lamina {

namespace {

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

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
        return Error{path, cause::kTooLarge};
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

Result<std::vector<std::uint8_t>> readSmallInput(const std::string& path, std::size_t limit)
{
    const std::unique_ptr<std::FILE, Close> file(std::fopen(path.c_str(), "rbe"));
    if (!file)
        return Error{path, readingFailure(errno)};
    std::vector<std::uint8_t> bytes(limit + 1);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    if (std::ferror(file.get()) != 0) // opening a folder succeeds, reading it does not
        return Error{path, readingFailure(errno)};
    if (bytes.size() > limit)
        return Error{path, cause::kTooLarge};
    return bytes;
}

} // namespace lamina
