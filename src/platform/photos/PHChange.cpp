#include "platform/photos/PHChange_p.h"

#include "platform/photos/FetchDifferences_p.h"
#include "platform/photos/PHFetchResult.h"
#include "platform/photos/PHFetchResultChangeDetails.h"
#include "platform/photos/PHFetchResult_p.h"

#include <cstddef>
#include <utility>

namespace lamina {

namespace {

/// With more than this to do a list is better shown anew.
constexpr std::size_t kMostDifferences = 5000;
/// So much of the past is kept.
constexpr std::size_t kMostChanges = 256;
constexpr std::size_t kMostChangedPhotos = 100'000;

} // namespace

void RecentChanges::add(const LibraryChange& change)
{
    if (!m_from)
        m_from = change.before->generation;
    if (!change.changed.empty())
        m_changes.push_back(
            std::make_shared<const ChangedPhotos>(ChangedPhotos{change.after->generation, change.changed}));
    m_photos += change.changed.size();
    while (m_changes.size() > kMostChanges || m_photos > kMostChangedPhotos) {
        m_from = m_changes.front()->generation;
        m_photos -= m_changes.front()->photos.size();
        m_changes.erase(m_changes.begin());
    }
}

std::optional<std::vector<PhotoID>> RecentChanges::since(std::uint64_t generation) const
{
    if (!m_from || generation < *m_from)
        return std::nullopt;
    std::vector<PhotoID> photos;
    for (const auto& change : m_changes)
        if (change->generation > generation)
            photos.insert(photos.end(), change->photos.begin(), change->photos.end());
    return photos;
}

std::optional<PHFetchResultChangeDetails> PHChange::changeDetailsForFetchResult(const PHFetchResult& object) const
{
    const PHFetchResult::Content& before = object.content();
    const LibrarySnapshotPtr& now = m_content->after;
    if (!before.snapshot || before.snapshot->generation >= now->generation)
        return std::nullopt;
    const auto after = std::make_shared<const PHFetchResult::Content>(now, before.album);
    const auto changed = m_content->recent.since(before.snapshot->generation);
    auto lists = changed ? fetchDifferences(*before.photos, *after->photos, *changed, kMostDifferences) : std::nullopt;
    if (!lists)
        return PHFetchResultChangeDetails(object, PHFetchResult(after), {}, false);
    if (lists->removed.empty() && lists->inserted.empty() && lists->changed.empty() && lists->moves.empty())
        return std::nullopt;
    return PHFetchResultChangeDetails(object, PHFetchResult(after), *std::move(lists), true);
}

} // namespace lamina
