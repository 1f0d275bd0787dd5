#include "platform/files/FileCopying.h"

#include "platform/base/Causes.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileReading.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <utility>

namespace lamina {

namespace {

/// Nobody who may not read the source may read the copy, where the file system knows such a thing.
void narrow(const FileDescriptor& copy, const FileDescriptor& source)
{
    struct stat of {};
    struct stat now {};
    if (::fstat(source.get(), &of) == 0 && ::fstat(copy.get(), &now) == 0 &&
        (now.st_mode & 0777 & ~(of.st_mode | S_IRWXU)) != 0)
        ::fchmod(copy.get(), now.st_mode & (of.st_mode | S_IRWXU) & 0777);
}

Outcome copyTo(const std::string& target, const OpenedFile& source)
{
    const FileDescriptor copy(::open(target.c_str(), O_WRONLY | O_CLOEXEC));
    if (copy.get() < 0)
        return Error{target, writingFailure(errno)};
    narrow(copy, source.descriptor);
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    off_t position = 0;
    while (true) {
        const ssize_t copied = ::sendfile(copy.get(), source.descriptor.get(), &position, kPiece);
        if (copied == 0)
            break;
        if (copied < 0 && errno != EINTR)
            return Error{target, writingFailure(errno)};
    }
    if (static_cast<std::uint64_t>(position) < source.size)
        return Error{target, cause::kTruncated};
    return success();
}

} // namespace

Result<FileFiller> contentsOf(const std::string& path)
{
    Result<OpenedFile> opened = openFileForReading(path);
    if (!opened)
        return opened.error();
    const auto source = std::make_shared<const OpenedFile>(std::move(*opened));
    return FileFiller([source](const std::string& target) { return copyTo(target, *source); });
}

} // namespace lamina
