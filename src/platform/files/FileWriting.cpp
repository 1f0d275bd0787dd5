#include "platform/files/FileWriting.h"

#include "platform/files/FileCauses.h"
#include "platform/files/UnfinishedFile_p.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

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
int writeThrough(const std::filesystem::path& target, const FilePieces& pieces)
{
    const int descriptor = ::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    int error = descriptor < 0 ? errno : 0;
    for (auto piece = pieces(); error == 0 && !piece.empty(); piece = pieces())
        error = writeAll(descriptor, piece);
    const int closing = descriptor < 0 ? 0 : writeAndClose(descriptor, {});
    return error != 0 ? error : closing;
}

/// What is in memory already.
FilePieces onePiece(std::span<const std::uint8_t> bytes)
{
    return [bytes]() mutable { return std::exchange(bytes, {}); };
}

/// Writes the open file and closes it; the cause where it failed for another reason than the file.
using Filling = std::function<std::string(UnfinishedFile& file)>;

Filling fillingWith(const FilePieces& pieces)
{
    return [&pieces](UnfinishedFile& file) {
        for (auto piece = pieces(); file.error() == 0 && !piece.empty(); piece = pieces())
            file.append(piece);
        file.close();
        return std::string();
    };
}

Filling fillingBy(const FileFiller& fill)
{
    return [&fill](UnfinishedFile& file) {
        const FileSizeSignalBlocker blocker;
        const Outcome outcome = fill(file.descriptorPath());
        file.close();
        return outcome ? std::string() : outcome.error().cause;
    };
}

/// The cause of failure, empty on success.
std::string replaceFile(const std::filesystem::path& target, const struct stat* existing, const Filling& fill)
{
    // Renaming would get past the protection of a file that may not be written.
    if (existing && ::access(target.c_str(), W_OK) != 0)
        return writingFailure(errno);
    UnfinishedFile file(target);
    if (existing)
        file.take(*existing);
    if (file.error() == 0)
        if (std::string cause = fill(file); !cause.empty())
            return cause;
    file.replace(target);
    return file.error() != 0 ? writingFailure(file.error()) : std::string();
}

/// `through`: writes what is no regular file; the cause of failure, empty on success.
Outcome write(const std::string& path, const Filling& fill,
              const std::function<std::string(const std::filesystem::path&)>& through)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        return Error{path, cause::kNoFileName};
    const std::optional<std::filesystem::path> target = followLinks(path);
    if (!target)
        return Error{path, writingFailure(ELOOP)};
    struct stat status {};
    const bool exists = ::stat(target->c_str(), &status) == 0;
    std::string cause;
    if ((exists && S_ISDIR(status.st_mode)) || !target->has_filename())
        cause = writingFailure(EISDIR);
    else if (exists && !S_ISREG(status.st_mode))
        cause = through(*target);
    else
        cause = replaceFile(*target, exists ? &status : nullptr, fill);
    if (!cause.empty())
        return Error{path, cause};
    return success();
}

/// Under a name that is free: false when it is not.
Result<bool> claimName(const std::string& path, const Filling& fill)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        return Error{path, cause::kNoFileName};
    const std::filesystem::path target(path);
    if (!target.has_filename())
        return Error{path, writingFailure(EISDIR)};
    UnfinishedFile file(target);
    if (file.error() == 0)
        if (std::string cause = fill(file); !cause.empty())
            return Error{path, std::move(cause)};
    const bool claimed = file.claim(target);
    if (file.error() != 0)
        return Error{path, writingFailure(file.error())};
    return claimed;
}

Result<std::string> writeNumbered(const std::string& stem, const std::string& extension, const Filling& fill)
{
    std::string path = stem + extension;
    UnfinishedFile file{std::filesystem::path(path)};
    if (file.error() == 0)
        if (std::string cause = fill(file); !cause.empty())
            return Error{path, cause};
    constexpr int kMostNames = 10'000; // far more than a user or a script writes of one name
    for (int number = 1; number <= kMostNames; ++number) {
        if (number > 1)
            path = std::string(stem).append(" ").append(std::to_string(number)).append(extension);
        if (file.claim(path))
            return path;
        if (file.error() != 0)
            return Error{path, writingFailure(file.error())};
    }
    return Error{stem + extension, "too many files of this name"};
}

} // namespace

Outcome writeFileAtomically(const std::string& path, std::span<const std::uint8_t> bytes)
{
    return writeFileAtomically(path, onePiece(bytes));
}

Outcome writeFileAtomically(const std::string& path, const FilePieces& pieces)
{
    return write(path, fillingWith(pieces), [&pieces](const std::filesystem::path& target) {
        const int error = writeThrough(target, pieces);
        return error != 0 ? writingFailure(error) : std::string();
    });
}

Outcome writeFileAtomically(const std::string& path, const FileFiller& fill)
{
    return write(path, fillingBy(fill), [](const std::filesystem::path&) { return std::string(cause::kNotRegular); });
}

Result<bool> writeNewFile(const std::string& path, std::span<const std::uint8_t> bytes)
{
    const FilePieces pieces = onePiece(bytes);
    return claimName(path, fillingWith(pieces));
}

Result<bool> writeNewFile(const std::string& path, const FileFiller& fill)
{
    return claimName(path, fillingBy(fill));
}

Result<std::string> writeNumberedFile(const std::string& stem, const std::string& extension, const FileFiller& fill)
{
    return writeNumbered(stem, extension, fillingBy(fill));
}

Result<std::string> writeNumberedFile(const std::string& stem, const std::string& extension,
                                      std::span<const std::uint8_t> bytes)
{
    const FilePieces pieces = onePiece(bytes);
    return writeNumbered(stem, extension, fillingWith(pieces));
}

Outcome writePrivateFile(const std::string& path, std::span<const std::uint8_t> bytes, Durability durability)
{
    const std::filesystem::path target(path);
    UnfinishedFile file(target, 0600);
    file.write(bytes, durability);
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
