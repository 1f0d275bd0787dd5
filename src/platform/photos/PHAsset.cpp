#include "platform/photos/PHAsset.h"

#include "platform/photos/LibraryReports_p.h"
#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/PHFetchResult_p.h"
#include "platform/photos/index/PhotoIndex.h"
#include "platform/photos/index/PhotoRecords.h"

#include <filesystem>
#include <optional>
#include <system_error>

namespace lamina {

std::vector<PHAsset> fetchAssetsWithLocalIdentifiers(const std::vector<std::string>& identifiers)
{
    const LibrarySnapshotPtr library = photoLibrary().snapshot();
    std::vector<PhotoID> photos;
    for (const std::string& identifier : identifiers)
        if (const std::optional<PhotoID> photo = library->index->photoID(identifier))
            photos.push_back(*photo);
    std::vector<PHAsset> assets = assetsOf(*library, photos);
    std::erase_if(assets, [](const PHAsset& asset) {
        std::error_code ignored;
        return asset.localIdentifier.empty() || !std::filesystem::exists(asset.path, ignored);
    });
    return assets;
}

} // namespace lamina
