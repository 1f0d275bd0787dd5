#include "picker/YMSPhotoPickerViewController.h"

#include "picker/PickerTexts.h"
#include "picker/YMSAlbumPickerViewController.h"
#include "platform/media/AVCaptureSession.h"
#include "platform/photos/PHFetchResult.h"

#include <algorithm>

// The albums that there are, and the one on show.

namespace lamina {

void YMSPhotoPickerViewController::fetchCollections()
{
    m_collectionItems = fetchCollectionItems();
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
    return m_currentCollectionItem ? shownName(m_currentCollectionItem->collection.localizedTitle) : QString();
}

QString YMSPhotoPickerViewController::albumIdentifier() const
{
    return m_currentCollectionItem ? QString::fromStdString(m_currentCollectionItem->collection.localIdentifier)
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
    giveUpFullImage();
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
