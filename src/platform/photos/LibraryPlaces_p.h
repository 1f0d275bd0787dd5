#pragma once

#include "platform/photos/index/PhotoRecords.h"

#include <cstddef>
#include <cstdint>
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
    /// The photo is here now, and was elsewhere, or not there, or here already. `stamp`: differs where its name or
    /// content does. `isOther`: they are known to differ from before.
    void put(const PhotoPlace& place, std::uint64_t stamp, bool isOther);
    void remove(PhotoID photo);
    /// All in these folders, but for those that are named.
    void removeFrom(const std::unordered_set<FolderID>& folders, const std::unordered_set<PhotoID>& except = {});
    /// How many photos are in the folder now.
    std::size_t countIn(FolderID folder) const;

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
    struct Now {
        PhotoPlace place;
        std::uint64_t stamp = 0; ///< 0: not known
    };
    Change& changeOf(PhotoID photo);

    std::vector<PhotoPlace> m_sorted;
    std::unordered_map<PhotoID, Now> m_now;
    std::unordered_map<FolderID, std::size_t> m_counts;
    std::unordered_map<PhotoID, Change> m_changes;
};

} // namespace lamina
