#include "platform/files/FileWriting.h"

#include "platform/files/AtomicWriting_p.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FilePlace_p.h"
#include "platform/files/FileReading.h"
#include "platform/files/FileSizeSignal.h"
#include "platform/files/UnfinishedFile_p.h"
#include "platform/files/UnfinishedNames_p.h"
#include "platform/files/WrittenFolders_p.h"

#include <cerrno>
#include <memory>
#include <utility>

namespace lamina {

namespace {

constexpr mode_t kOfOwner = 0600;

Filling fillingBy(const FileFiller& fill)
{
    return [&fill](UnfinishedFile& file) {
        const FileSizeSignalBlocker blocker;
        const Outcome outcome = fill(file.descriptorPath());
        return outcome ? std::string() : outcome.error().cause;
    };
}

/// What replaces another is on the device before its name is: a loss of power leaves the file of before or this one.
int takeNameSafely(std::unique_ptr<UnfinishedFile> file, const std::string& name, bool replaces)
{
    file->finish(replaces ? Durability::OnDevice : Durability::Ordinary);
    file->replace(name);
    return file->error();
}

/// Fills and ends the file; the cause of failure, empty on success.
std::string fillFile(UnfinishedFile& file, const Filling& fill)
{
    std::string cause = file.error() == 0 ? fill(file) : std::string();
    if (cause.empty())
        file.finish();
    if (cause.empty() && file.error() != 0)
        cause = writingFailure(file.error());
    return cause;
}

Outcome findNewPlace(const std::string& path, FilePlace& place)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        return Error{path, cause::kNoFileName};
    if (const int error = findNamedPlace(path, place))
        return Error{path, writingFailure(error)};
    return success();
}

/// Under a name that is free: false when it is not.
Result<bool> claimName(const std::string& path, const Filling& fill)
{
    FilePlace place;
    if (const Outcome found = findNewPlace(path, place); !found)
        return found.error();
    UnfinishedFile file(place.folder);
    if (std::string cause = fillFile(file, fill); !cause.empty())
        return Error{path, std::move(cause)};
    const bool claimed = file.claim(place.name);
    if (file.error() != 0)
        return Error{path, writingFailure(file.error())};
    return claimed;
}

Result<std::string> writeNumbered(const std::string& stem, const std::string& extension, const Filling& fill)
{
    std::string path = stem + extension;
    FilePlace place;
    if (const Outcome found = findNewPlace(path, place); !found)
        return found.error();
    UnfinishedFile file(place.folder);
    if (std::string cause = fillFile(file, fill); !cause.empty())
        return Error{path, std::move(cause)};
    constexpr int kMostNames = 10'000; // far more than a user or a script writes of one name
    for (int number = 1; number <= kMostNames; ++number) {
        if (number > 1)
            path = std::string(stem).append(" ").append(std::to_string(number)).append(extension);
        if (file.claim(nameInFolder(path)))
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
    return writeWhole(path, fillingWith(pieces), throughWith(pieces), takeNameSafely);
}

Outcome writeFileAtomically(const std::string& path, const FileFiller& fill)
{
    const auto refuse = [](const FileDescriptor&) { return std::string(cause::kNotRegular); };
    return writeWhole(path, fillingBy(fill), refuse, takeNameSafely);
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
    FilePlace place;
    if (Outcome found = findNewPlace(path, place); !found)
        return found;
    UnfinishedFile file(place.folder, kOfOwner);
    file.append(bytes);
    file.finish(durability);
    file.replace(place.name, durability);
    if (file.error() != 0)
        return Error{path, writingFailure(file.error())};
    return success();
}

void removeUnfinishedFiles()
{
    const int error = errno;
    UnfinishedNames::removeAll();
    errno = error;
}

} // namespace lamina
