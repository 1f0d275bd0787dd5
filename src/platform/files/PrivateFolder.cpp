#include "platform/files/PrivateFolder.h"

#include "platform/files/FileCauses.h"
#include "platform/files/FileSweeping_p.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>

namespace lamina {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kOwnerOnly = 0700;

/// A variable that names no absolute path counts as unset.
std::string_view folderInEnvironment(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr && *value == '/' ? value : std::string_view();
}

/// "lamina" in the folder that the variable names, else in `standard` of the user's home; empty without either.
std::string ownFolder(const char* variable, std::string_view standard)
{
    if (const std::string_view named = folderInEnvironment(variable); !named.empty())
        return std::string(named) + "/lamina";
    const std::string_view home = folderInEnvironment("HOME");
    return home.empty() ? std::string() : std::string(home) + std::string(standard) + "/lamina";
}

/// What can't be looked at or removed stays for the next time; what may still be written, for who writes here next.
void removeLeftovers(const std::string& folder)
{
    const fs::file_time_type oldest = fs::file_time_type::clock::now() - kLeftoversKept;
    std::error_code failure;
    for (fs::directory_iterator entry(folder, failure); !failure && entry != fs::end(entry); entry.increment(failure)) {
        std::error_code ignored;
        if (entry->symlink_status(ignored).type() == fs::file_type::regular &&
            entry->last_write_time(ignored) < oldest && !isUnfinishedName(entry->path().filename().native()))
            fs::remove(entry->path(), ignored);
    }
}

bool isSameFolder(int descriptor, const std::string& path)
{
    struct stat open {};
    struct stat named {};
    return ::fstat(descriptor, &open) == 0 && ::stat(path.c_str(), &named) == 0 && open.st_ino == named.st_ino &&
           open.st_dev == named.st_dev;
}

/// The mode is given to the folder that was looked at, whatever becomes of its path.
Outcome closeToOthers(const std::string& path)
{
    const FileDescriptor folder(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (folder.get() < 0 || ::fstat(folder.get(), &status) != 0)
        return Error{path, writingFailure(errno)};
    const std::string opened = "/proc/self/fd/" + std::to_string(folder.get());
    if ((status.st_mode & 07777) != kOwnerOnly && ::chmod(opened.c_str(), kOwnerOnly) != 0)
        return Error{path, writingFailure(errno)};
    return success();
}

} // namespace

std::string stateFolder()
{
    return ownFolder("XDG_STATE_HOME", "/.local/state");
}

std::string cacheFolder()
{
    return ownFolder("XDG_CACHE_HOME", "/.cache");
}

Result<std::string> temporaryFolder()
{
    const std::string own = cacheFolder();
    if (own.empty())
        return Error{{}, "there is no folder for temporary files"};
    const std::string folder = own + "/temporary";
    if (Outcome made = makePrivateFolder(folder); !made)
        return made.error();
    removeLeftovers(folder);
    return folder;
}

Outcome makeFolder(const std::string& path)
{
    std::error_code failure;
    fs::create_directories(path, failure);
    if (failure)
        return Error{path, writingFailure(failure.value())};
    return success();
}

Outcome makePrivateFolder(const std::string& path)
{
    const fs::path folder(path);
    std::error_code ignored;
    if (folder.has_relative_path() && !fs::exists(folder.parent_path(), ignored)) {
        if (Outcome above = makePrivateFolder(folder.parent_path()); !above)
            return above;
    }
    if (::mkdir(path.c_str(), kOwnerOnly) == 0)
        return success();
    return errno == EEXIST ? closeToOthers(path) : Error{path, writingFailure(errno)};
}

std::optional<FolderLock> FolderLock::take(const std::string& folder)
{
    std::optional<FolderLock> lock = tryLock(folder, LOCK_EX);
    // Whoever had it before may just have removed it: that one would be nobody's folder.
    if (lock && !isSameFolder(lock->m_folder.get(), folder))
        lock.reset();
    return lock;
}

bool FolderLock::isTaken(const std::string& folder)
{
    return !tryLock(folder, LOCK_SH);
}

std::optional<FolderLock> FolderLock::tryLock(const std::string& folder, int operation)
{
    FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.get() < 0 || (::flock(descriptor.get(), operation | LOCK_NB) != 0 && errno == EWOULDBLOCK))
        return std::nullopt;
    return FolderLock(std::move(descriptor));
}

} // namespace lamina
