#pragma once

#include "platform/files/FileReading.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace lamina {

/// What the kernel tells of a watched folder.
struct WatchEvent {
    int watch = -1;         ///< -1 when `isOverflow`
    std::uint32_t mask = 0; ///< of <sys/inotify.h>
    std::string name;       ///< of what is in the folder; empty: the folder itself

    bool isOverflow() const; ///< events were lost
    bool isOfFolder() const; ///< what the name names is a folder
    bool isEnd() const;      ///< nothing more will come of this watch: the folder is gone, or no longer watched
};

/// Watches folders for what is in them, a watch a folder, as the kernel does it: nothing runs while nothing happens. A
/// watch stays with its folder, wherever that is moved. For one thread at a time.
class FolderWatch {
public:
    /// `most`: folders that may be watched at once, if the system allows as many.
    explicit FolderWatch(std::size_t most);

    /// To be waited on until it can be read; -1: nothing can be watched at all.
    int descriptor() const { return m_descriptor.get(); }

    enum class Depth {
        Contents, ///< all that happens to what is in the folder
        Names,    ///< what comes and goes alone
    };
    /// Watches the folder of this path, a link followed. Gives the watch, the former one where that folder has one,
    /// which then hears of what is added here as well. Nothing when there can be none: no such folder, or no more.
    std::optional<int> add(const std::string& path, Depth depth);
    /// Unknown ones are passed over.
    void remove(int watch);

    /// What has happened, in order; does not wait.
    std::vector<WatchEvent> read();

private:
    FileDescriptor m_descriptor;
    std::size_t m_most;
    std::unordered_set<int> m_watches;
    bool m_told = false;
};

} // namespace lamina
