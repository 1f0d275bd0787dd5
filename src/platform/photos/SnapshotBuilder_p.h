#pragma once

#include "platform/photos/LibraryPlaces_p.h"
#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/LibraryTree_p.h"
#include "platform/photos/index/PhotoRecords.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace lamina {

/// Makes snapshots of folders and photos, one after the other: what has not changed since the one before is shared with
/// it. For one thread at a time.
class SnapshotBuilder {
public:
    /// `folders`: those whose photos have changed since the last call. `isOtherTree`: folders have come or gone. The
    /// parts that are not made of these are left empty.
    LibrarySnapshot build(const LibraryTree& tree, const LibraryPlaces& places,
                          const std::unordered_set<FolderID>& folders, bool isOtherTree);
    /// The next call makes everything anew.
    void forget() { *this = {}; }
    /// The folder's photos in the last snapshot.
    PhotoIDs photosOf(FolderID folder) const;

private:
    static constexpr std::size_t kKinds = 4; ///< values of `SmartFolder`

    void takePhotos(const std::vector<PhotoPlace>& places, const std::unordered_set<FolderID>& folders);
    void takeTree(const LibraryTree& tree);
    void takeSmart(const std::vector<PhotoPlace>& places, const std::unordered_set<FolderID>& folders);
    bool append(const TreeFolder& folder, int parent, LibrarySnapshot& snapshot,
                std::array<std::vector<const TreeFolder*>, kKinds>& smart) const;

    bool m_isNew = true;
    PhotoIDs m_none = std::make_shared<const std::vector<PhotoID>>();
    PhotoIDs m_all = m_none;
    std::unordered_map<FolderID, PhotoIDs> m_photos; ///< without empty ones
    std::unordered_map<FolderID, SmartFolder> m_kinds;
    std::array<PhotoIDs, kKinds> m_smart{m_none, m_none, m_none, m_none};
    std::shared_ptr<const std::unordered_map<FolderID, std::string>> m_paths;
};

} // namespace lamina
