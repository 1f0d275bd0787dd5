#include "picker/YMSPhotoPickerViewController.h"

#include "picker/YMSAlbumPickerViewController.h"
#include "platform/media/AVCaptureSession.h"
#include "platform/photos/PHCollection.h"
#include "platform/photos/PHFetchResult.h"

#include <algorithm>
#include <utility>
#include <variant>

// The albums that there are, and the one on show.

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

void YMSPhotoPickerViewController::fetchCollections()
{
    Items items;
    addUserAlbums(items, fetchTopLevelUserCollections());
    addSmartAlbums(items);
    m_collectionItems = std::move(items);
    m_collectionsAreOld = false;
}

/// The list of albums is to tell what there is now; the album on show stays as it is shown.
void YMSPhotoPickerViewController::refreshCollections()
{
    if (!m_collectionsAreOld)
        return;
    fetchCollections();
    for (CollectionItem& item : m_collectionItems)
        if (m_currentCollectionItem && item.collection == m_currentCollectionItem->collection)
            item = *m_currentCollectionItem;
}

QString YMSPhotoPickerViewController::albumTitle() const
{
    return m_currentCollectionItem ? QString::fromStdString(m_currentCollectionItem->collection.localizedTitle)
                                   : QString();
}

void YMSPhotoPickerViewController::updateViewWithCollectionItem(const std::optional<CollectionItem>& item)
{
    m_currentCollectionItem = item;
    emit albumChanged();
    m_grid.reloadData(item ? item->assets : PHFetchResult());
    refreshPhotoSelection();
}

void YMSPhotoPickerViewController::presentAlbumPickerView()
{
    if (!m_currentCollectionItem || presentedViewController())
        return;
    refreshCollections();
    const auto chosen = [self = weakSelf()](const std::optional<CollectionItem>& item) {
        if (const auto picker = self.lock(); picker && item)
            picker->albumChosen(*item);
    };
    present(std::make_shared<YMSAlbumPickerViewController>(m_collectionItems, m_currentCollectionItem, chosen), true);
}

void YMSPhotoPickerViewController::albumChosen(const CollectionItem& item)
{
    if (item == m_currentCollectionItem)
        startSession();
    else
        updateViewWithCollectionItem(item);
}

} // namespace lamina
