#include "platform/files/FileAttributes_p.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace lamina {

namespace {

using Bytes = std::vector<char>;

constexpr const char* kAccessList = "system.posix_acl_access";
constexpr std::string_view kOfUser = "user.";
constexpr mode_t kPermissions = 0777;
constexpr mode_t kOfOwner = 0700;

/// Nothing where there is none, or it can't be read; its value may well be empty.
std::optional<Bytes> attribute(int file, const char* name)
{
    const ssize_t room = ::fgetxattr(file, name, nullptr, 0);
    Bytes value(room > 0 ? static_cast<std::size_t>(room) : 0);
    const ssize_t size = room > 0 ? ::fgetxattr(file, name, value.data(), value.size()) : room;
    if (size < 0)
        return std::nullopt;
    value.resize(static_cast<std::size_t>(size));
    return value;
}

/// Comments, tags, where a picture comes from. What can't be kept is no reason to fail.
void copyUserAttributes(int file, int former)
{
    const ssize_t room = ::flistxattr(former, nullptr, 0);
    Bytes names(room > 0 ? static_cast<std::size_t>(room) : 0);
    const ssize_t size = room > 0 ? ::flistxattr(former, names.data(), names.size()) : 0;
    for (const char* name = names.data(); size > 0 && name < names.data() + size; name += std::strlen(name) + 1) {
        if (!std::string_view(name).starts_with(kOfUser))
            continue;
        if (const std::optional<Bytes> value = attribute(former, name))
            ::fsetxattr(file, name, value->data(), value->size(), 0);
    }
}

/// What the others could do, and the former group too: nobody gains by finding himself in the other class.
mode_t withoutGroup(mode_t mode)
{
    const mode_t both = (mode >> 3) & mode & 07;
    return (mode & kOfOwner) | (both << 3) | both;
}

/// Whether the file has the list now; an empty one takes that away which the folder gave it.
bool setAccessList(int file, const Bytes& list)
{
    if (!list.empty())
        return ::fsetxattr(file, kAccessList, list.data(), list.size(), 0) == 0;
    return ::fremovexattr(file, kAccessList) == 0 || errno == ENODATA || errno == ENOTSUP;
}

} // namespace

int takeAttributes(int file, int former)
{
    struct stat was {};
    struct stat now {};
    if (::fstat(former, &was) != 0)
        return errno;
    // What counts is not what these say but what the file has afterwards.
    if (::fchown(file, was.st_uid, was.st_gid) != 0 && ::fchown(file, static_cast<uid_t>(-1), was.st_gid) != 0)
        errno = 0;
    if (::fstat(file, &now) != 0)
        return errno;
    const bool hasGroup = now.st_gid == was.st_gid;
    const Bytes list = attribute(former, kAccessList).value_or(Bytes());
    mode_t mode = was.st_mode & kPermissions;
    if (!hasGroup)
        mode = list.empty() ? withoutGroup(mode) : mode & kOfOwner; // a list's group class is not the group's alone
    if (!setAccessList(file, hasGroup ? list : Bytes()))
        mode &= kOfOwner;
    if (now.st_uid != was.st_uid)
        mode |= S_IRUSR | S_IWUSR; // it is ours now
    copyUserAttributes(file, former);
    ::fchmod(file, mode);
    if (::fstat(file, &now) != 0)
        return errno;
    return (now.st_mode & kPermissions & ~mode) != 0 ? EPERM : 0;
}

} // namespace lamina
