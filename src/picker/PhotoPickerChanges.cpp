#include "picker/YMSPhotoPickerViewController.h"

#include "picker/PickerTexts.h"
#include "platform/base/Localization.h"
#include "platform/photos/PHCollection.h"
#include "platform/photos/PHFetchResult.h"
#include "platform/photos/PHFetchResultChangeDetails.h"

#include <algorithm>
#include <utility>

// What becomes of the photo picker when the library changes under it.

namespace lamina {

namespace {

bool canBeToldInSteps(const PHFetchResultChangeDetails& details)
{
    return details.hasIncrementalChanges() && !details.hasMoves() &&
           (details.removedIndexes().empty() || details.changedIndexes().empty());
}

} // namespace

void YMSPhotoPickerViewController::photoLibraryDidChange(const PHChange& changeInstance)
{
    m_collectionsAreOld = true;
    renewSelectedPhotos();
    const auto details = m_currentCollectionItem
                             ? changeInstance.changeDetailsForFetchResult(m_currentCollectionItem->assets)
                             : std::nullopt;
    if (details)
        showChanges(*details);
    else
        followOtherAlbums();
    updateLibraryState();
}

/// The album on show is as it was.
void YMSPhotoPickerViewController::followOtherAlbums()
{
    fetchCollections();
    selectPhotoJustTaken(m_collectionItems.empty() ? std::nullopt : m_collectionItems.front().assets.firstObject());
    if (!m_currentCollectionItem && !m_collectionItems.empty())
        updateViewWithCollectionItem(m_collectionItems.front());
}

void YMSPhotoPickerViewController::showChanges(const PHFetchResultChangeDetails& details)
{
    const CollectionItem former = *m_currentCollectionItem;
    m_currentCollectionItem = CollectionItem{former.collection, details.fetchResultAfterChanges()};
    std::ranges::replace(m_collectionItems, former, *m_currentCollectionItem);
    if (!canBeToldInSteps(details)) {
        m_grid.reloadData(details.fetchResultAfterChanges());
        return;
    }
    // The camera's item is not counted here. Tiles compare what they show with their photos anyway, and those whose
    // marks go with a reload get them back below.
    std::vector<int> reloaded;
    for (const std::size_t changed : details.changedIndexes())
        if (const int item = static_cast<int>(changed); !(m_needToSelectFirstPhoto && m_grid.isSelected(item)))
            reloaded.push_back(item);
    m_grid.performBatchUpdates(details, reloaded);
    selectPhotoJustTaken(details.fetchResultAfterChanges().firstObject());
    refreshPhotoSelection();
}

/// That is the newest one, unless the library has another one in its place: a clock may have been set back.
void YMSPhotoPickerViewController::selectPhotoJustTaken(const std::optional<PHAsset>& newest)
{
    if (!m_needToSelectFirstPhoto)
        return;
    const std::vector<PHAsset> taken = fetchAssetsWithLocalIdentifiers({m_takenPhoto});
    const std::optional<PHAsset> photo = taken.empty() ? newest : std::optional(taken.front());
    if (!photo)
        return;
    m_needToSelectFirstPhoto = false;
    if (!selectionIndexOf(*photo) && canAddPhoto())
        addToSelection(*photo);
}

/// A photo that has got another name or folder stays chosen, as it is now.
void YMSPhotoPickerViewController::renewSelectedPhotos()
{
    std::vector<std::string> identifiers;
    for (const PHAsset& chosen : m_selectedPhotos)
        identifiers.push_back(chosen.localIdentifier);
    const std::vector<PHAsset> found = fetchAssetsWithLocalIdentifiers(identifiers);
    const std::vector<PHAsset> former = m_selectedPhotos;
    for (const PHAsset& fresh : found)
        *std::ranges::find(m_selectedPhotos, fresh) = fresh;
    if (found.size() == former.size())
        return;
    std::string names;
    for (const PHAsset& chosen : former) {
        if (std::ranges::find(found, chosen) != found.end())
            continue;
        if (const std::optional<int> item = itemOfAsset(chosen))
            m_grid.deselectItem(*item);
        removeFromSelection(chosen);
        names += (names.empty() ? "" : ", ") + localizedText("“%1”", {shownFileName(chosen).toStdString()});
    }
    emit notice(QString::fromStdString(localizedText(QT_TRANSLATE_NOOP("Lamina", "No longer there: %1"), {names})));
}

/// The same photos, of which some may have other files.
void YMSPhotoPickerViewController::refreshTiles(const CollectionItem& item)
{
    const PHFetchResult former = std::exchange(m_currentCollectionItem, item)->assets;
    m_grid.performBatchUpdates({former, item.assets, {}, true}, {});
}

/// Nobody told the picker of changes while another screen covered it.
void YMSPhotoPickerViewController::catchUpWithLibrary()
{
    m_collectionsAreOld = true;
    renewSelectedPhotos();
    if (!m_currentCollectionItem) {
        followOtherAlbums();
    } else {
        const CollectionItem former = *m_currentCollectionItem;
        const CollectionItem item{former.collection, fetchAssetsInAssetCollection(former.collection)};
        std::ranges::replace(m_collectionItems, former, item);
        if (item == former)
            refreshTiles(item);
        else
            updateViewWithCollectionItem(item);
        selectPhotoJustTaken(std::nullopt);
        refreshPhotoSelection();
    }
    updateLibraryState();
}

} // namespace lamina
