#include "platform/files/WrittenFolders_p.h"

#include "platform/files/FileSweeping_p.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <tuple>
#include <utility>

namespace lamina {

namespace {

/// A folder, as it is reached: the same one may be mounted twice, once to be read alone. By the time when it was made
/// too, since numbers are given again.
using FolderIdentity =
    std::tuple<std::uint64_t, std::uint32_t, std::uint32_t, std::uint64_t, std::int64_t, std::uint32_t>;

/// None where the system doesn't tell.
std::optional<FolderIdentity> identityOf(int folder)
{
    struct statx status {};
    if (::statx(folder, "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME | STATX_MNT_ID, &status) != 0)
        return std::nullopt;
    return FolderIdentity{status.stx_mnt_id, status.stx_dev_major,    status.stx_dev_minor,
                          status.stx_ino,    status.stx_btime.tv_sec, status.stx_btime.tv_nsec};
}

struct KnownFolders {
    std::mutex mutex;
    std::map<FolderIdentity, std::weak_ptr<const FileDescriptor>> folders;
};

/// Never destroyed: threads may be writing while the process ends.
KnownFolders& knownFolders()
{
    static auto* const known = new KnownFolders;
    return *known;
}

/// The descriptor that others use, or this one; whether the folder is met for the first time. What nobody can tell from
/// another folder is not shared.
std::pair<OpenFolder, bool> share(FileDescriptor opened)
{
    const std::optional<FolderIdentity> identity = identityOf(opened.get());
    if (!identity)
        return {std::make_shared<const FileDescriptor>(std::move(opened)), false};
    KnownFolders& known = knownFolders();
    const std::lock_guard lock(known.mutex);
    const auto [entry, isNew] = known.folders.try_emplace(*identity);
    OpenFolder folder = entry->second.lock();
    if (!folder) {
        folder = std::make_shared<const FileDescriptor>(std::move(opened));
        entry->second = folder;
    }
    return {folder, isNew};
}

} // namespace

int openFolderOf(const std::string& path, OpenFolder& folder)
{
    // The full stop keeps a link to a folder from being the last name, of which the system asks more.
    const std::string within = path.substr(0, path.rfind('/') + 1) + ".";
    FileDescriptor opened(::open(within.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (opened.get() < 0)
        return errno;
    bool isNew = false;
    std::tie(folder, isNew) = share(std::move(opened));
    if (isNew)
        sweepUnfinishedFiles(folder->get());
    return 0;
}

std::string nameInFolder(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

} // namespace lamina
