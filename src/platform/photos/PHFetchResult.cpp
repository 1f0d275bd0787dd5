#include "platform/photos/PHFetchResult_p.h"

#include "platform/photos/index/PhotoIndex.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

namespace lamina {

namespace {

/// Rows that are read together: several screens of a grid, and some tenths of a millisecond.
constexpr std::size_t kPage = 256;

/// Where folders lie, those too that have gone or come since the snapshot.
class FolderPaths {
public:
    explicit FolderPaths(const LibrarySnapshot& snapshot)
        : m_snapshot(snapshot)
    {
    }
    std::string path(FolderID folder)
    {
        if (const auto found = m_snapshot.folderPaths->find(folder); found != m_snapshot.folderPaths->end())
            return found->second;
        if (m_other.empty())
            for (FolderRecord& record : m_snapshot.index->folders())
                m_other.emplace(record.id, std::move(record.path));
        const auto found = m_other.find(folder);
        return found == m_other.end() ? std::string() : found->second;
    }

private:
    const LibrarySnapshot& m_snapshot;
    std::unordered_map<FolderID, std::string> m_other;
};

PHAsset assetOf(const LibrarySnapshot& snapshot, const PhotoRecord& record, FolderPaths& folders)
{
    return {.localIdentifier = snapshot.index->localIdentifier(record.id),
            .path = folders.path(record.folder) + '/' + record.name,
            .pixelWidth = record.width,
            .pixelHeight = record.height,
            .creationDate = record.date,
            .modified = record.modified};
}

/// A photo that the index doesn't know.
PHAsset looseAsset(const LibrarySnapshot& snapshot, PhotoID photo)
{
    const std::vector<LooseFile>& files = *snapshot.looseFiles;
    const auto found = std::lower_bound(files.begin(), files.end(), photo,
                                        [](const LooseFile& file, PhotoID id) { return file.id < id; });
    if (found == files.end() || found->id != photo)
        return {};
    return {.localIdentifier = snapshot.index->localIdentifier(photo),
            .path = found->path,
            .pixelWidth = found->width,
            .pixelHeight = found->height,
            .creationDate = found->date,
            .modified = found->modified};
}

} // namespace

std::vector<PHAsset> assetsOf(const LibrarySnapshot& snapshot, std::span<const PhotoID> photos)
{
    const std::vector<PhotoRecord> records = snapshot.index->records(photos);
    FolderPaths folders(snapshot);
    std::vector<PHAsset> assets;
    assets.reserve(photos.size());
    for (std::size_t i = 0; i < photos.size(); ++i)
        assets.push_back(records[i].id != 0 ? assetOf(snapshot, records[i], folders) : looseAsset(snapshot, photos[i]));
    return assets;
}

PHAsset AssetPages::at(const LibrarySnapshot& snapshot, const std::vector<PhotoID>& photos, std::size_t index)
{
    const std::lock_guard lock(m_mutex);
    const Page& page = pageAt(snapshot, photos, index);
    return page.assets[index - page.first];
}

const AssetPages::Page& AssetPages::pageAt(const LibrarySnapshot& snapshot, const std::vector<PhotoID>& photos,
                                           std::size_t index)
{
    const std::size_t first = index / kPage * kPage;
    const auto isWanted = [&](const Page& page) { return !page.assets.empty() && page.first == first; };
    if (isWanted(m_pages[0]))
        return m_pages[0];
    std::swap(m_pages[0], m_pages[1]);
    if (!isWanted(m_pages[0]))
        m_pages[0] = {first,
                      assetsOf(snapshot, std::span(photos).subspan(first, std::min(kPage, photos.size() - first)))};
    return m_pages[0];
}

PHFetchResult::Content::Content(LibrarySnapshotPtr snapshot_, const AlbumKey& album_)
    : snapshot(std::move(snapshot_))
    , album(album_)
    , photos(photosOf(*snapshot, album))
{
}

PHFetchResult::PHFetchResult()
    : m_content(std::make_shared<const Content>())
{
}

PHFetchResult::PHFetchResult(std::shared_ptr<const Content> content)
    : m_content(std::move(content))
{
}

std::size_t PHFetchResult::count() const
{
    return m_content->photos->size();
}

PHAsset PHFetchResult::objectAtIndex(std::size_t index) const
{
    if (index >= count())
        return {};
    return m_content->pages.at(*m_content->snapshot, *m_content->photos, index);
}

std::optional<PHAsset> PHFetchResult::firstObject() const
{
    return isEmpty() ? std::nullopt : std::optional(objectAtIndex(0));
}

std::vector<PHAsset> PHFetchResult::objects(std::size_t first, std::size_t count) const
{
    std::vector<PHAsset> assets;
    const std::size_t end = first + std::min(count, this->count() - std::min(first, this->count()));
    for (std::size_t index = first; index < end; ++index)
        assets.push_back(objectAtIndex(index));
    return assets;
}

std::optional<std::size_t> PHFetchResult::indexOfObject(const PHAsset& asset) const
{
    if (isEmpty())
        return std::nullopt;
    const std::optional<PhotoID> photo = m_content->snapshot->index->photoID(asset.localIdentifier);
    const std::vector<PhotoID>& photos = *m_content->photos;
    const auto found = photo ? std::find(photos.begin(), photos.end(), *photo) : photos.end();
    return found == photos.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - photos.begin()));
}

bool operator==(const PHFetchResult& x, const PHFetchResult& y)
{
    const PhotoIDs& xs = x.m_content->photos;
    const PhotoIDs& ys = y.m_content->photos;
    return xs == ys || *xs == *ys;
}

} // namespace lamina
