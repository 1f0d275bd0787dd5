#pragma once

#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/PHChange.h"
#include "platform/photos/index/PhotoRecords.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

/// The photos whose content, date or place were different from one generation of the library on.
struct ChangedPhotos {
    std::uint64_t generation = 0;
    std::vector<PhotoID> photos;
};

/// What was changed lately, oldest first, so that also a fetch result that was left out for a while can tell which of
/// its pictures to show anew.
class RecentChanges {
public:
    /// The history begins with a change that `before` doesn't know. Much that is long ago is forgotten.
    void add(const LibraryChange& change);

    /// All photos changed after that generation; nothing when that is too long ago.
    std::optional<std::vector<PhotoID>> since(std::uint64_t generation) const;

private:
    std::optional<std::uint64_t> m_from; ///< all changes after this generation are here
    std::size_t m_photos = 0;            ///< in all of them
    std::vector<std::shared_ptr<const ChangedPhotos>> m_changes;
};

struct PHChange::Content {
    LibrarySnapshotPtr after;
    RecentChanges recent;
};

} // namespace lamina
