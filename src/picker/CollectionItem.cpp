#include "picker/CollectionItem.h"

#include <utility>
#include <variant>

namespace lamina {

namespace {

using Items = std::vector<CollectionItem>;

void addUserAlbums(Items& items, const std::vector<PHCollection>& collections)
{
    for (const PHCollection& collection : collections) {
        if (const auto* const list = std::get_if<PHCollectionList>(&collection)) {
            addUserAlbums(items, fetchCollectionsInCollectionList(*list));
            continue;
        }
        const auto& album = std::get<PHAssetCollection>(collection);
        PHFetchResult assets = fetchAssetsInAssetCollection(album);
        if (!assets.isEmpty())
            items.push_back({album, std::move(assets)});
    }
}

/// The user's library goes to the front.
void addSmartAlbums(Items& items)
{
    for (const PHAssetCollection& album :
         fetchAssetCollectionsWithType(PHAssetCollectionType::SmartAlbum, PHAssetCollectionSubtype::AlbumRegular)) {
        PHFetchResult assets = fetchAssetsInAssetCollection(album);
        if (assets.isEmpty())
            continue;
        const bool isLibrary = album.assetCollectionSubtype == PHAssetCollectionSubtype::SmartAlbumUserLibrary;
        items.insert(isLibrary ? items.begin() : items.end(), {album, std::move(assets)});
    }
}

} // namespace

std::vector<CollectionItem> fetchCollectionItems()
{
    Items items;
    addUserAlbums(items, fetchTopLevelUserCollections());
    addSmartAlbums(items);
    return items;
}

} // namespace lamina
