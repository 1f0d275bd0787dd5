#include "platform/photos/FetchDifferences_p.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <iterator>
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

/// The places at which kept photos stand before their predecessors of the list before. Each must be moved, or another
/// one for it.
std::size_t countDescents(const std::vector<Move>& kept)
{
    std::size_t descents = 0;
    for (std::size_t i = 1; i < kept.size(); ++i)
        descents += kept[i].to < kept[i - 1].to ? 1 : 0;
    return descents;
}

/// Whether each of these photos belongs to a longest sequence that ascends in the list after. It is built up by the
/// smallest last place that a sequence of each length can have.
std::vector<bool> longestAscent(const std::vector<Move>& kept)
{
    constexpr std::size_t kNone = SIZE_MAX;
    std::vector<std::size_t> tops;                         // the last place, for each length
    std::vector<std::size_t> ends;                         // and whose that is
    std::vector<std::size_t> previous(kept.size(), kNone); // in the sequence that ends here
    std::size_t next = 0; // where the photo goes if its neighbour is the one that it had
    for (std::size_t i = 0; i < kept.size(); ++i) {
        const std::size_t to = kept[i].to;
        const bool follows = (next == 0 || tops[next - 1] < to) && (next == tops.size() || to <= tops[next]);
        const std::size_t length =
            follows ? next : static_cast<std::size_t>(std::lower_bound(tops.begin(), tops.end(), to) - tops.begin());
        if (length == tops.size()) {
            tops.emplace_back();
            ends.emplace_back();
        }
        tops[length] = to;
        ends[length] = i;
        previous[i] = length > 0 ? ends[length - 1] : kNone;
        next = length + 1;
    }
    std::vector<bool> belongs(kept.size());
    for (std::size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = previous[i])
        belongs[i] = true;
    return belongs;
}

/// Those of the kept photos, in their order of before, that don't stay between their neighbours; nothing when they are
/// more than `most`.
std::optional<std::vector<Move>> movesAmong(const std::vector<Move>& kept, std::size_t most)
{
    const std::size_t descents = countDescents(kept);
    std::vector<Move> moves;
    if (descents == 0)
        return moves;
    if (descents > most)
        return std::nullopt;
    const std::vector<bool> stays = longestAscent(kept);
    for (std::size_t i = 0; i < kept.size(); ++i)
        if (!stays[i])
            moves.push_back(kept[i]);
    std::sort(moves.begin(), moves.end(), [](const Move& x, const Move& y) { return x.to < y.to; });
    return moves.size() <= most ? std::optional(std::move(moves)) : std::nullopt;
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

/// All but `changed`; nothing when something is more than `most`.
std::optional<Lists> listsOf(const Middle& middle, std::size_t most)
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
    if (lists.removed.size() + lists.inserted.size() > most)
        return std::nullopt;
    auto moves = movesAmong(kept, most);
    if (!moves)
        return std::nullopt;
    lists.moves = *std::move(moves);
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
    std::optional<Lists> lists = listsOf(middleOf(before, after), most);
    if (!lists)
        return std::nullopt;
    lists->changed = changedPlaces(after, changed, lists->inserted);
    return lists->changed.size() <= most ? std::move(lists) : std::nullopt;
}

} // namespace lamina
