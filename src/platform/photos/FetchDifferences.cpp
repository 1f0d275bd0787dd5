#include "platform/photos/FetchDifferences_p.h"

#include <iterator>
#include <algorithm>
#include <bit>
#include <cstdint>
#include <utility>
#include <vector>

namespace lamina {

namespace {

using Lists = PHFetchResultChangeDetails::Lists;
using Move = PHFetchResultChangeDetails::Move;

/// Where each photo of a list stands: a table with open addressing, since the standard's maps would take several times
/// as long for some ten thousand photos.
class Places {
public:
    explicit Places(std::span<const PhotoID> photos)
        : m_slots(std::bit_ceil(photos.size() * 2 + 1))
        , m_mask(m_slots.size() - 1)
    {
        for (std::size_t place = 0; place < photos.size(); ++place)
            m_slots[slotOf(photos[place])] = {photos[place], place + 1};
    }
    std::optional<std::size_t> find(PhotoID photo) const
    {
        const Slot& slot = m_slots[slotOf(photo)];
        return slot.number == 0 ? std::nullopt : std::optional(slot.number - 1);
    }

private:
    struct Slot {
        PhotoID photo = 0;
        std::size_t number = 0; ///< its place and 1; 0: the slot is free
    };
    /// The photo's slot, or the one in which it would stand.
    std::size_t slotOf(PhotoID photo) const
    {
        std::size_t slot = ((static_cast<std::uint64_t>(photo) * 0x9E3779B97F4A7C15U) >> 32U) & m_mask;
        while (m_slots[slot].number != 0 && m_slots[slot].photo != photo)
            slot = (slot + 1) & m_mask;
        return slot;
    }

    std::vector<Slot> m_slots;
    std::size_t m_mask;
};

/// Those of the kept photos, in their order of before, that don't stay between their neighbours: all but a longest
/// ascending sequence of places in the list after.
std::vector<Move> movesAmong(const std::vector<Move>& kept)
{
    const auto ascends = [](const Move& x, const Move& y) { return x.to < y.to; };
    if (std::is_sorted(kept.begin(), kept.end(), ascends))
        return {};
    constexpr std::size_t kNone = SIZE_MAX;
    std::vector<std::size_t> ends;                         // of the best sequence of each length, in `kept`
    std::vector<std::size_t> previous(kept.size(), kNone); // in the sequence that ends here
    for (std::size_t i = 0; i < kept.size(); ++i) {
        const auto end =
            std::lower_bound(ends.begin(), ends.end(), i, [&](auto x, auto y) { return ascends(kept[x], kept[y]); });
        if (end != ends.begin())
            previous[i] = *std::prev(end);
        if (end == ends.end())
            ends.push_back(i);
        else
            *end = i;
    }
    std::vector<bool> stays(kept.size());
    for (std::size_t i = ends.back(); i != kNone; i = previous[i])
        stays[i] = true;
    std::vector<Move> moves;
    for (std::size_t i = 0; i < kept.size(); ++i)
        if (!stays[i])
            moves.push_back(kept[i]);
    std::sort(moves.begin(), moves.end(), ascends);
    return moves;
}

/// What stands between the equal beginning and the equal end of two lists.
struct Middle {
    std::size_t start = 0;
    std::span<const PhotoID> before, after;
};

Middle middleOf(std::span<const PhotoID> before, std::span<const PhotoID> after)
{
    const auto start = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const std::size_t first = static_cast<std::size_t>(start.first - before.begin());
    before = before.subspan(first);
    after = after.subspan(first);
    const auto end = std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend());
    const std::size_t last = static_cast<std::size_t>(end.first - before.rbegin());
    return {first, before.first(before.size() - last), after.first(after.size() - last)};
}

/// All but `changed`.
Lists listsOf(const Middle& middle)
{
    Lists lists;
    std::vector<Move> kept;
    std::vector<bool> wasThere(middle.after.size());
    const Places places(middle.after);
    for (std::size_t i = 0; i < middle.before.size(); ++i) {
        if (const auto place = places.find(middle.before[i])) {
            kept.push_back({middle.start + i, middle.start + *place});
            wasThere[*place] = true;
        } else {
            lists.removed.push_back(middle.start + i);
        }
    }
    for (std::size_t i = 0; i < wasThere.size(); ++i)
        if (!wasThere[i])
            lists.inserted.push_back(middle.start + i);
    lists.moves = movesAmong(kept);
    return lists;
}

std::vector<std::size_t> changedPlaces(std::span<const PhotoID> after, std::span<const PhotoID> changed,
                                       const std::vector<std::size_t>& inserted)
{
    std::vector<std::size_t> found;
    if (changed.empty())
        return found;
    const Places wanted(changed);
    for (std::size_t i = 0; i < after.size(); ++i)
        if (wanted.find(after[i]) && !std::binary_search(inserted.begin(), inserted.end(), i))
            found.push_back(i);
    return found;
}

} // namespace

std::optional<Lists> fetchDifferences(std::span<const PhotoID> before, std::span<const PhotoID> after,
                                      std::span<const PhotoID> changed, std::size_t most)
{
    Lists lists = listsOf(middleOf(before, after));
    lists.changed = changedPlaces(after, changed, lists.inserted);
    const bool few = lists.removed.size() + lists.inserted.size() <= most && lists.changed.size() <= most &&
                     lists.moves.size() <= most;
    return few ? std::optional(std::move(lists)) : std::nullopt;
}

} // namespace lamina
