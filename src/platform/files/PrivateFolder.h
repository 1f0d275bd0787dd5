#pragma once

#include "platform/base/Result.h"
#include "platform/files/FileReading.h"

#include <optional>
#include <string>
#include <utility>

namespace lamina {

/// Where the application keeps what outlives it and is nobody else's: "lamina" in the user's folder for state
/// ($XDG_STATE_HOME, else ~/.local/state). Empty when the user has neither. It is not made here. Usable from any
/// thread.
std::string stateFolder();

/// Where the application keeps what it can make again: "lamina" in the user's folder for caches ($XDG_CACHE_HOME, else
/// ~/.cache). Empty when the user has neither. It is not made here. Usable from any thread.
std::string cacheFolder();

/// A folder of our own for files that are to be gone some day, for the owner alone: "temporary" in `cacheFolder()`,
/// which lies on a disk and can't be made by somebody else before us. It is made, and files in it that were last
/// written more than a day ago are removed. The error's subject is the folder. Usable from any thread.
Result<std::string> temporaryFolder();

/// Makes the folder, and those above it that are missing, as folders usually are. The error's subject is the path.
/// Usable from any thread.
Outcome makeFolder(const std::string& path);

/// Makes the folder, and those above it that are missing, for the owner alone (mode 0700); one that is there becomes
/// so. The error's subject is the path. Usable from any thread.
Outcome makePrivateFolder(const std::string& path);

/// A folder that one holder at a time has for itself, among all programs and in one: gone with the holder, however the
/// process ends. Movable; usable from any thread.
class FolderLock {
public:
    /// Nothing when somebody has it, or there is no such folder. On a file system without locks everybody gets it.
    static std::optional<FolderLock> take(const std::string& folder);
    /// Whether somebody has it now.
    static bool isTaken(const std::string& folder);

private:
    explicit FolderLock(FileDescriptor folder)
        : m_folder(std::move(folder))
    {
    }
    static std::optional<FolderLock> tryLock(const std::string& folder, int operation);

    FileDescriptor m_folder;
};

} // namespace lamina
