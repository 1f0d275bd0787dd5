#include "platform/photos/LibraryPlaces_p.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lamina {

LibraryPlaces::LibraryPlaces(std::vector<PhotoPlace> sorted)
    : m_sorted(std::move(sorted))
{
    m_now.reserve(m_sorted.size());
    for (const PhotoPlace& place : m_sorted)
        m_now.emplace(place.id, place);
}

std::optional<PhotoPlace> LibraryPlaces::find(PhotoID photo) const
{
    const auto found = m_now.find(photo);
    return found == m_now.end() ? std::nullopt : std::optional(found->second);
}

LibraryPlaces::Change& LibraryPlaces::changeOf(PhotoID photo)
{
    const auto [change, isNew] = m_changes.try_emplace(photo);
    if (isNew)
        change->second.before = find(photo);
    return change->second;
}

void LibraryPlaces::put(const PhotoPlace& place, bool isOther)
{
    if (!isOther && find(place.id) == place)
        return;
    Change& change = changeOf(place.id);
    change.isOther = change.isOther || isOther || change.before != place;
    m_now[place.id] = place;
}

void LibraryPlaces::remove(PhotoID photo)
{
    if (!m_now.contains(photo))
        return;
    changeOf(photo);
    m_now.erase(photo);
}

void LibraryPlaces::removeFolders(const std::unordered_set<FolderID>& folders)
{
    std::vector<PhotoID> leaving;
    for (const auto& [photo, place] : m_now) {
        if (folders.contains(place.folder))
            leaving.push_back(photo);
    }
    for (const PhotoID photo : leaving)
        remove(photo);
}

LibraryPlaces::Changes LibraryPlaces::apply()
{
    Changes result;
    std::vector<PhotoPlace> arriving;
    for (const auto& [photo, change] : m_changes) {
        const std::optional<PhotoPlace> now = find(photo);
        if (now)
            arriving.push_back(*now);
        if (now && change.before && change.isOther)
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
    m_changes.clear();
    return result;
}

} // namespace lamina
