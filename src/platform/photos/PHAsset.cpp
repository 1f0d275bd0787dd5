#include "platform/photos/PHAsset.h"

#include "platform/photos/LibraryReports_p.h"
#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/PHFetchResult_p.h"
#include "platform/photos/index/PhotoIndex.h"
#include "platform/photos/index/PhotoRecords.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <system_error>
#include <unordered_set>

namespace lamina {

namespace {

std::unordered_set<PhotoID> shownOf(const LibrarySnapshot& library, std::vector<PhotoID> photos)
{
    std::ranges::sort(photos);
    std::unordered_set<PhotoID> shown;
    for (const PhotoID photo : *library.all)
        if (std::ranges::binary_search(photos, photo))
            shown.insert(photo);
    return shown;
}

/// Of one that the library doesn't show: it has just been made, or is gone.
bool isThere(const PHAsset& asset)
{
    std::error_code ignored;
    return std::filesystem::exists(asset.path, ignored);
}

} // namespace

std::vector<PHAsset> fetchAssetsWithLocalIdentifiers(const std::vector<std::string>& identifiers)
{
    const LibrarySnapshotPtr library = photoLibrary().snapshot();
    std::vector<PhotoID> photos;
    for (const std::string& identifier : identifiers)
        if (const std::optional<PhotoID> photo = library->index->photoID(identifier))
            photos.push_back(*photo);
    const std::unordered_set<PhotoID> shown = shownOf(*library, photos);
    const std::vector<PHAsset> known = assetsOf(*library, photos);
    std::vector<PHAsset> assets;
    for (std::size_t i = 0; i < known.size(); ++i)
        if (!known[i].localIdentifier.empty() && (shown.contains(photos[i]) || isThere(known[i])))
            assets.push_back(known[i]);
    return assets;
}

} // namespace lamina
