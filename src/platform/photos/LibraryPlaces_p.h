#pragma once

#include "platform/photos/PhotoRecords_p.h"

#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace lamina {

/// Which photos are there, in which folder, and in which order. Changes are gathered, and cost one pass over all when
/// they are applied. For one thread at a time.
class LibraryPlaces {
public:
    LibraryPlaces() = default;
    /// `sorted`: by `isShownBefore`.
    explicit LibraryPlaces(std::vector<PhotoPlace> sorted);

    /// Where the photo is now; nothing: it is not there.
    std::optional<PhotoPlace> find(PhotoID photo) const;
    /// The photo is here now, and was elsewhere, or not there, or here already. `isOther`: it has another content or
    /// name than it had.
    void put(const PhotoPlace& place, bool isOther);
    void remove(PhotoID photo);
    /// All of these folders leave.
    void removeFolders(const std::unordered_set<FolderID>& folders);

    bool hasChanges() const { return !m_changes.empty(); }

    /// What has changed since the last time.
    struct Changes {
        std::vector<PhotoID> changed;         ///< sorted: there before and now, and not the same
        std::unordered_set<FolderID> folders; ///< that have other photos now, or in another order
    };
    Changes apply();
    /// As of the last `apply`.
    const std::vector<PhotoPlace>& sorted() const { return m_sorted; }

private:
    struct Change {
        std::optional<PhotoPlace> before;
        bool isOther = false;
    };
    Change& changeOf(PhotoID photo);

    std::vector<PhotoPlace> m_sorted;
    std::unordered_map<PhotoID, PhotoPlace> m_now;
    std::unordered_map<PhotoID, Change> m_changes;
};

} // namespace lamina
