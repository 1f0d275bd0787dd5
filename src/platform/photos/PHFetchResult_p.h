#pragma once

#include "platform/photos/Albums_p.h"
#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHFetchResult.h"
#include "platform/photos/index/PhotoRecords.h"

#include <array>
#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace lamina {

/// What is known of these photos, in their order, gone ones too; one that nobody knows gives an asset without
/// identifier. Reads the index.
std::vector<PHAsset> assetsOf(const LibrarySnapshot& snapshot, std::span<const PhotoID> photos);

/// The rows of a list that were read last, some hundred together: those around where a list is shown.
class AssetPages {
public:
    PHAsset at(const LibrarySnapshot& snapshot, const std::vector<PhotoID>& photos, std::size_t index);

private:
    struct Page {
        std::size_t first = 0;
        std::vector<PHAsset> assets; ///< empty: not read yet
    };
    const Page& pageAt(const LibrarySnapshot& snapshot, const std::vector<PhotoID>& photos, std::size_t index);

    std::mutex m_mutex;
    std::array<Page, 2> m_pages; ///< the one used last is the first
};

struct PHFetchResult::Content {
    /// The album as it is in the snapshot.
    Content(LibrarySnapshotPtr snapshot_, const AlbumKey& album_);
    /// No photos of no library.
    Content() = default;

    const LibrarySnapshotPtr snapshot;
    const AlbumKey album;
    const PhotoIDs photos = std::make_shared<const std::vector<PhotoID>>();
    mutable AssetPages pages;
};

} // namespace lamina
