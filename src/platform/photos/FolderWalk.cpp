#include "platform/photos/FolderWalk_p.h"

#include "platform/files/FileCauses.h"
#include "platform/files/FileReading.h"
#include "platform/image/codecs/PictureFormats.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <time.h>

namespace lamina {

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;

std::int64_t nanoseconds(const timespec& time)
{
    return static_cast<std::int64_t>(time.tv_sec) * kSecond + time.tv_nsec;
}

FileKey keyOf(const struct stat& status)
{
    return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)};
}

/// Network file systems and those of programs: a watch tells of this machine's own changes at best.
bool isRemoteFileSystem(int descriptor)
{
    constexpr std::array<std::uint32_t, 9> kRemote = {
        0x6969,     // NFS
        0x517B,     // SMB
        0xFE534D42, // SMB 2
        0xFF534D42, // CIFS
        0x65735546, // FUSE
        0x01021997, // 9P
        0x5346414F, // AFS
        0x73757245, // Coda
        0x00C36400, // Ceph
    };
    struct statfs status {};
    return fstatfs(descriptor, &status) == 0 &&
           std::ranges::find(kRemote, static_cast<std::uint32_t>(status.f_type)) != kRemote.end();
}

std::optional<ListedFile> findFileAt(int folder, const char* name)
{
    struct stat status {};
    if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return {};
    const bool isLink = S_ISLNK(status.st_mode);
    if (isLink && fstatat(folder, name, &status, 0) != 0)
        return {};
    if (!S_ISREG(status.st_mode) || status.st_size == 0)
        return {};
    return ListedFile{.name = name,
                      .key = keyOf(status),
                      .modified = nanoseconds(status.st_mtim),
                      .bytes = status.st_size,
                      .isLink = isLink,
                      .mayRepeat = isLink || status.st_nlink > 1};
}

void listEntry(int descriptor, const dirent& entry, FolderListing& listing)
{
    const std::string_view name = entry.d_name;
    if (name.starts_with('.'))
        return;
    struct stat status {};
    if ((entry.d_type == DT_DIR || entry.d_type == DT_UNKNOWN) &&
        fstatat(descriptor, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode)) {
        listing.folders.push_back({std::string(name), keyOf(status)});
        return;
    }
    if (entry.d_type == DT_DIR || !isPhotoName(name))
        return;
    if (std::optional<ListedFile> file = findFileAt(descriptor, entry.d_name))
        listing.files.push_back(std::move(*file));
}

} // namespace

bool isPhotoName(std::string_view name)
{
    return !name.starts_with('.') && pictureFormatForFileName(name) != nullptr;
}

Result<FolderListing> listFolder(const std::string& path)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path.c_str()), closedir);
    if (!folder)
        return Error{path, errno == ENOENT ? cause::kNoSuchFolder : readingFailure(errno)};
    const int descriptor = dirfd(folder.get());
    struct stat status {};
    if (fstat(descriptor, &status) != 0)
        return Error{path, readingFailure(errno)};
    FolderListing listing{.key = keyOf(status), .isRemote = isRemoteFileSystem(descriptor), .folders = {}, .files = {}};
    errno = 0;
    while (const dirent* entry = readdir(folder.get())) {
        listEntry(descriptor, *entry, listing);
        errno = 0;
    }
    if (errno != 0)
        return Error{path, readingFailure(errno)};
    std::ranges::sort(listing.folders, {}, &ListedFolder::name);
    std::ranges::sort(listing.files, {}, &ListedFile::name);
    return listing;
}

std::optional<ListedFile> findFile(const std::string& folder, const std::string& name)
{
    std::optional<ListedFile> file = findFileAt(AT_FDCWD, pathIn(folder, name).c_str());
    if (file)
        file->name = name;
    return file;
}

std::optional<FileKey> findFolder(const std::string& path)
{
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return {};
    return keyOf(status);
}

std::string withoutSlashes(std::string path)
{
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

std::string parentPath(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : slash == 0 ? "/" : path.substr(0, slash);
}

std::string pathIn(const std::string& folder, std::string_view name)
{
    return folder + (folder.ends_with('/') ? "" : "/") + std::string(name);
}

} // namespace lamina
