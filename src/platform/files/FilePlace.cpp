#include "platform/files/FilePlace_p.h"

#include "platform/files/UnfinishedFile_p.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

/// What was found is there no more, or something else is.
constexpr int kHasChanged = ESTALE;
constexpr int kMostAttempts = 16;

constexpr int kWriting = O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY;
constexpr mode_t kOfOwner = 0600;

bool isSame(const struct stat& one, const struct stat& other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Opened as if to be made: the system then asks more of files and pipes in folders that are everybody's. It is there,
/// so that nothing is made, or will be found to be another one.
int openForWriting(const std::string& path, int options, FileDescriptor& file)
{
    file = FileDescriptor(::open(path.c_str(), kWriting | options, kOfOwner));
    return file.get() < 0 ? errno : 0;
}

/// Whether the file is as `openForWriting` makes one. Those that others make in the same moment have other permissions,
/// as a rule, and are not ours to be taken away.
bool isAsMade(const struct stat& status)
{
    constexpr mode_t kAll = 07777;
    return S_ISREG(status.st_mode) && status.st_size == 0 && status.st_uid == ::geteuid() &&
           (status.st_mode & kAll) == kOfOwner;
}

/// The path of an open file, at this moment; empty where there is none.
std::string pathOf(const FileDescriptor& file)
{
    std::array<char, PATH_MAX> path{};
    const std::string link = "/proc/self/fd/" + std::to_string(file.get());
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : std::string();
}

/// Whether the path's own last name is the open file's; a link that leads to it is not.
bool findNameOf(const FileDescriptor& file, const std::string& path, FilePlace& place)
{
    struct stat open {};
    struct stat named {};
    return !path.empty() && findNamedPlace(path, place) == 0 && ::fstat(file.get(), &open) == 0 &&
           ::fstatat(place.folder->get(), place.name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 && isSame(open, named);
}

bool findNameOf(const FileDescriptor& file, FilePlace& place)
{
    return findNameOf(file, pathOf(file), place);
}

/// What was found has gone before it could be opened, and a file was made in its stead: that is taken away.
void takeAwayMade(const FileDescriptor& made, const std::string& path)
{
    struct stat status {};
    FilePlace place;
    if (::fstat(made.get(), &status) == 0 && isAsMade(status) && findNameOf(made, path, place))
        ::unlinkat(place.folder->get(), place.name.c_str(), 0);
}

int placeOf(const FileDescriptor& found, const std::string& path, FilePlace& place)
{
    struct stat status {};
    if (::fstat(found.get(), &status) != 0)
        return errno;
    if (S_ISDIR(status.st_mode))
        return EISDIR;
    const bool isRegular = S_ISREG(status.st_mode);
    if (const int error = openForWriting(path, isRegular ? O_NONBLOCK : 0, place.existing))
        return error;
    // Asked anew: opening it for writing may give it another number (what is laid over a file system that can only be
    // read is copied then).
    struct stat existing {};
    if (::fstat(found.get(), &status) != 0 || ::fstat(place.existing.get(), &existing) != 0 ||
        !isSame(status, existing)) {
        if (status.st_nlink == 0)
            takeAwayMade(place.existing, path);
        return kHasChanged;
    }
    const bool isNameless = existing.st_nlink == 0;
    if (!isRegular || isNameless)
        return 0;
    return findNameOf(place.existing, path, place) || findNameOf(place.existing, place) ? 0 : kHasChanged;
}

/// The system makes what a link leads to, and the name is free again as soon as it is known.
int placeOfLinked(const std::string& path, FilePlace& place)
{
    const SignalBlocker blocker; // nobody else would take it away
    FileDescriptor made(-1);
    struct stat status {};
    if (const int error = openForWriting(path, O_NONBLOCK, made))
        return error;
    if (::fstat(made.get(), &status) != 0 || !isAsMade(status))
        return kHasChanged;
    const std::string madePath = pathOf(made);
    if (madePath.empty()) { // the system names none: there is no way but to write through
        place = FilePlace{};
        place.existing = std::move(made);
        return 0;
    }
    if (!findNameOf(made, madePath, place))
        return kHasChanged;
    return ::unlinkat(place.folder->get(), place.name.c_str(), 0) == 0 ? 0 : errno;
}

int placeOfMissing(const std::string& path, FilePlace& place)
{
    if (const int error = findNamedPlace(path, place))
        return error;
    struct stat status {};
    if (::fstatat(place.folder->get(), place.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? 0 : errno;
    return S_ISLNK(status.st_mode) ? placeOfLinked(path, place) : kHasChanged;
}

int tryToFind(const std::string& path, FilePlace& place)
{
    const FileDescriptor found(::open(path.c_str(), O_PATH | O_CLOEXEC));
    if (found.get() >= 0)
        return placeOf(found, path, place);
    return errno == ENOENT ? placeOfMissing(path, place) : errno;
}

} // namespace

int findPlace(const std::string& path, FilePlace& place)
{
    int error = kHasChanged;
    for (int i = 0; i < kMostAttempts && error == kHasChanged; ++i) {
        place = FilePlace{};
        error = tryToFind(path, place);
    }
    return error == kHasChanged ? EBUSY : error;
}

int findNamedPlace(const std::string& path, FilePlace& place)
{
    place.name = nameInFolder(path);
    if (place.name.empty())
        return EISDIR;
    return openFolderOf(path, place.folder);
}

} // namespace lamina
