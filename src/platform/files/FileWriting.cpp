#include "platform/files/FileWriting.h"

#include "platform/files/FileCauses.h"
#include "platform/files/UnfinishedFile_p.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace lamina {

namespace {

/// The file that a path means once its symbolic links are followed; it need not exist. Nothing on a circle.
std::optional<std::filesystem::path> followLinks(std::filesystem::path path)
{
    constexpr int kMostLinks = 40;
    for (int i = 0; i < kMostLinks; ++i) {
        std::error_code error;
        const std::filesystem::path next = std::filesystem::read_symlink(path, error);
        if (error)
            return path;
        path = path.parent_path() / next; // an absolute one replaces it all
    }
    return std::nullopt;
}

/// Pipes and devices have nothing to be replaced.
int writeThrough(const std::filesystem::path& target, std::span<const std::uint8_t> bytes)
{
    const int descriptor = ::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    return descriptor < 0 ? errno : writeAndClose(descriptor, bytes);
}

int replaceFile(const std::filesystem::path& target, const struct stat* existing, std::span<const std::uint8_t> bytes)
{
    // Renaming would get past the protection of a file that may not be written.
    if (existing && ::access(target.c_str(), W_OK) != 0)
        return errno;
    UnfinishedFile file(target);
    if (existing)
        file.take(*existing);
    file.write(bytes);
    file.replace(target);
    return file.error();
}

} // namespace

Outcome writeFileAtomically(const std::string& path, std::span<const std::uint8_t> bytes)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        return Error{path, cause::kNoFileName};
    const std::optional<std::filesystem::path> target = followLinks(path);
    if (!target)
        return Error{path, writingFailure(ELOOP)};
    struct stat status {};
    const bool exists = ::stat(target->c_str(), &status) == 0;
    int error = 0;
    if ((exists && S_ISDIR(status.st_mode)) || !target->has_filename())
        error = EISDIR;
    else if (exists && !S_ISREG(status.st_mode))
        error = writeThrough(*target, bytes);
    else
        error = replaceFile(*target, exists ? &status : nullptr, bytes);
    if (error != 0)
        return Error{path, writingFailure(error)};
    return success();
}

Result<bool> writeNewFile(const std::string& path, std::span<const std::uint8_t> bytes)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        return Error{path, cause::kNoFileName};
    const std::filesystem::path target(path);
    if (!target.has_filename())
        return Error{path, writingFailure(EISDIR)};
    UnfinishedFile file(target);
    file.write(bytes);
    file.claim(target);
    if (file.error() == EEXIST)
        return false;
    if (file.error() != 0)
        return Error{path, writingFailure(file.error())};
    return true;
}

Outcome writePrivateFile(const std::string& path, std::span<const std::uint8_t> bytes)
{
    const std::filesystem::path target(path);
    UnfinishedFile file(target, 0600);
    file.write(bytes, Durability::OnDevice);
    file.replace(target);
    if (file.error() != 0)
        return Error{path, writingFailure(file.error())};
    return success();
}

void removeUnfinishedFiles()
{
    const int error = errno;
    UnfinishedFile::removeAll();
    errno = error;
}

} // namespace lamina
