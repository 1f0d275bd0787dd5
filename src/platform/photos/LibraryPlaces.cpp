#include "platform/photos/LibraryPlaces_p.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lamina {

LibraryPlaces::LibraryPlaces(std::vector<PhotoPlace> sorted)
    : m_sorted(std::move(sorted))
{
    m_now.reserve(m_sorted.size());
    for (const PhotoPlace& place : m_sorted) {
        m_now.emplace(place.id, Now{place});
        ++m_counts[place.folder];
    }
}

std::optional<PhotoPlace> LibraryPlaces::find(PhotoID photo) const
{
    const auto found = m_now.find(photo);
    return found == m_now.end() ? std::nullopt : std::optional(found->second.place);
}

LibraryPlaces::Change& LibraryPlaces::changeOf(PhotoID photo)
{
    const auto [change, isNew] = m_changes.try_emplace(photo);
    if (isNew)
        change->second.before = find(photo);
    return change->second;
}

void LibraryPlaces::put(const PhotoPlace& place, std::uint64_t stamp, bool isOther)
{
    const auto found = m_now.find(place.id);
    if (found != m_now.end()) {
        Now& now = found->second;
        isOther = isOther || now.place != place || (now.stamp != 0 && now.stamp != stamp);
        if (!isOther) {
            now.stamp = stamp;
            return;
        }
    }
    Change& change = changeOf(place.id);
    change.isOther = change.isOther || isOther;
    if (found != m_now.end())
        --m_counts[found->second.place.folder];
    ++m_counts[place.folder];
    m_now[place.id] = {place, stamp};
}

void LibraryPlaces::remove(PhotoID photo)
{
    const auto found = m_now.find(photo);
    if (found == m_now.end())
        return;
    changeOf(photo);
    --m_counts[found->second.place.folder];
    m_now.erase(found);
}

void LibraryPlaces::removeFrom(const std::unordered_set<FolderID>& folders, const std::unordered_set<PhotoID>& except)
{
    std::vector<PhotoID> leaving;
    for (const auto& [photo, now] : m_now) {
        if (folders.contains(now.place.folder) && !except.contains(photo))
            leaving.push_back(photo);
    }
    for (const PhotoID photo : leaving)
        remove(photo);
}

std::size_t LibraryPlaces::countIn(FolderID folder) const
{
    const auto count = m_counts.find(folder);
    return count == m_counts.end() ? 0 : count->second;
}

LibraryPlaces::Changes LibraryPlaces::apply()
{
    Changes result;
    std::vector<PhotoPlace> arriving;
    for (const auto& [photo, change] : m_changes) {
        const std::optional<PhotoPlace> now = find(photo);
        if (now)
            arriving.push_back(*now);
        if (now && change.before && (change.isOther || *now != *change.before))
            result.changed.push_back(photo);
        for (const std::optional<PhotoPlace>& place : {change.before, now}) {
            if (place && change.before != now)
                result.folders.insert(place->folder);
        }
    }
    std::ranges::sort(result.changed);
    std::ranges::sort(arriving, isShownBefore);
    std::erase_if(m_sorted, [&](const PhotoPlace& place) { return m_changes.contains(place.id); });
    std::vector<PhotoPlace> merged;
    merged.reserve(m_sorted.size() + arriving.size());
    std::ranges::merge(m_sorted, arriving, std::back_inserter(merged), isShownBefore);
    m_sorted = std::move(merged);
    std::erase_if(m_counts, [](const auto& count) { return count.second == 0; });
    m_changes.clear();
    return result;
}

} // namespace lamina
