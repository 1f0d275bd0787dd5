#pragma once

#include "platform/photos/PHFetchResult.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace lamina {

/// What has become of a fetch result's pictures. The index lists are ascending, and together say how the list before
/// becomes the list after, as a collection view takes it: delete `removedIndexes` of before, insert what stands at
/// `insertedIndexes` of after, and take each of `moves` from its place in before to its place in after; what is left
/// keeps its order. A plain value.
class PHFetchResultChangeDetails {
public:
    /// From a place in the list before to a place in the list after.
    struct Move {
        std::size_t from = 0;
        std::size_t to = 0;

        friend bool operator==(const Move&, const Move&) = default;
    };
    /// The lists of indexes below.
    struct Lists {
        std::vector<std::size_t> removed, inserted, changed;
        std::vector<Move> moves;
    };

    const PHFetchResult& fetchResultBeforeChanges() const { return m_before; }
    const PHFetchResult& fetchResultAfterChanges() const { return m_after; }

    /// False when so much is different that the list had better be shown anew: all lists are empty then.
    bool hasIncrementalChanges() const { return m_incremental; }
    /// Places in the list before.
    const std::vector<std::size_t>& removedIndexes() const { return m_lists.removed; }
    /// Places in the list after.
    const std::vector<std::size_t>& insertedIndexes() const { return m_lists.inserted; }
    /// Places in the list after of pictures that were there before and have another content, date or name now.
    const std::vector<std::size_t>& changedIndexes() const { return m_lists.changed; }

    /// Whether pictures that stay have changed their order.
    bool hasMoves() const { return !m_lists.moves.empty(); }
    /// As few as there can be, by where they go.
    const std::vector<Move>& moves() const { return m_lists.moves; }

    /// For the implementation.
    PHFetchResultChangeDetails(PHFetchResult before, PHFetchResult after, Lists lists, bool incremental)
        : m_before(std::move(before))
        , m_after(std::move(after))
        , m_lists(std::move(lists))
        , m_incremental(incremental)
    {
    }

private:
    PHFetchResult m_before;
    PHFetchResult m_after;
    Lists m_lists;
    bool m_incremental;
};

} // namespace lamina
