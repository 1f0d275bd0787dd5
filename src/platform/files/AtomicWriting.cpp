#include "platform/files/AtomicWriting_p.h"

#include "platform/files/FileCauses.h"
#include "platform/files/FilePlace_p.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

constexpr mode_t kOfAnyNewFile = 0666;
/// Until it has those of the file that it replaces.
constexpr mode_t kOfOwner = 0600;

std::string causeOf(int error)
{
    return error != 0 ? writingFailure(error) : std::string();
}

/// The cause of failure, empty on success.
std::string writeThere(FilePlace place, const Filling& fill, const Naming& takeName)
{
    const bool replaces = place.exists();
    auto file = std::make_unique<UnfinishedFile>(place.folder, replaces ? kOfOwner : kOfAnyNewFile);
    if (replaces)
        file->take(place.existing);
    place.existing = FileDescriptor(-1);
    if (file->error() == 0)
        if (std::string cause = fill(*file); !cause.empty())
            return cause;
    return causeOf(file->error() != 0 ? file->error() : takeName(std::move(file), place.name, replaces));
}

} // namespace

FilePieces onePiece(std::span<const std::uint8_t> bytes)
{
    return [bytes]() mutable { return std::exchange(bytes, {}); };
}

Filling fillingWith(const FilePieces& pieces)
{
    return [&pieces](UnfinishedFile& file) {
        for (auto piece = pieces(); file.error() == 0 && !piece.empty(); piece = pieces())
            file.append(piece);
        return std::string();
    };
}

Through throughWith(const FilePieces& pieces)
{
    return [&pieces](const FileDescriptor& file) {
        struct stat status {};
        const bool isRegular = ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode);
        int error = isRegular && ::ftruncate(file.get(), 0) != 0 ? errno : 0;
        for (auto piece = pieces(); error == 0 && !piece.empty(); piece = pieces())
            error = writeAll(file.get(), piece);
        return causeOf(error != 0 ? error : closingError(file.get()));
    };
}

Outcome writeWhole(const std::string& path, const Filling& fill, const Through& through, const Naming& takeName)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        return Error{path, cause::kNoFileName};
    FilePlace place;
    if (const int error = findPlace(path, place))
        return Error{path, writingFailure(error)};
    const std::string cause =
        place.isWrittenThrough() ? through(place.existing) : writeThere(std::move(place), fill, takeName);
    if (!cause.empty())
        return Error{path, cause};
    return success();
}

} // namespace lamina
