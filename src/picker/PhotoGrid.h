#pragma once

#include "picker/PhotoGridCell.h"
#include "picker/PhotoGridModel.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHFetchResult.h"
#include "platform/photos/PHFetchResultChangeDetails.h"

#include <memory>
#include <set>
#include <vector>

namespace lamina {

class YMSCameraCell;
class YMSPhotoCell;

/// Fills the grid's tiles, and is asked and told what a user does with them. Items count from 0, the camera.
class PhotoGridDelegate {
public:
    virtual ~PhotoGridDelegate() = default;

    /// The photo of an item; one without identifier for the camera's.
    virtual PHAsset assetOfItem(int item) const = 0;

    /// The camera's tile begins to show it, or shows it anew.
    virtual void prepareCameraCell(YMSCameraCell& cell) = 0;
    /// The same for a photo's.
    virtual void preparePhotoCell(YMSPhotoCell& cell, int item) = 0;
    /// The item under a tile may have got another photo, or its photo another file.
    virtual void refreshPhotoCell(YMSPhotoCell& cell, int item) = 0;

    /// Whether a tap may select the item,
    virtual bool shouldSelectItem(int item) = 0;
    /// and that it has.
    virtual void didSelectItem(int item) = 0;
    /// Whether a tap may take the selection back,
    virtual bool shouldDeselectItem(int item) = 0;
    /// and that it has, or that it has selected another item in its place.
    virtual void didDeselectItem(int item) = 0;
};

/// A grid of one section as a collection view keeps it, but for the layout: its items, the tiles that show some of
/// them, and which items are selected. What a user does is asked of the delegate and told to it; what a caller does by
/// the other operations is not. Main thread.
class PhotoGrid {
public:
    /// The delegate must outlive the grid.
    explicit PhotoGrid(PhotoGridDelegate& delegate);
    ~PhotoGrid();
    PhotoGrid(const PhotoGrid&) = delete;
    PhotoGrid& operator=(const PhotoGrid&) = delete;

    /// Default false: a tap on another item deselects the one before.
    bool allowsMultipleSelection = false;

    PhotoGridModel& model() { return m_model; }
    int numberOfItems() const { return m_model.count(); }

    /// Shows other photos; nothing is selected then.
    void reloadData(PHFetchResult photos);
    /// Lets items go and come, without moves, and reloads `reloaded`, items of the list after the change. The tiles and
    /// the selection of the others go along.
    void performBatchUpdates(const PHFetchResultChangeDetails& changes, const std::vector<int>& reloaded);
    /// Lets the delegate look at all photo tiles that views show.
    void refreshPhotoCells();
    /// The item's tile is filled anew, and the item is not selected any more.
    void reloadItem(int item);

    /// The tile that shows an item now; null: none does.
    PhotoGridCell* cellForItem(int item) const;
    /// The same where it is a photo's.
    YMSPhotoCell* photoCellForItem(int item) const;
    /// Another tile than `except` that has the photo's picture; null: none has.
    YMSPhotoCell* photoCellShowing(const PHAsset& asset, const YMSPhotoCell& except) const;

    /// A tile for a view that is to show the item, which must exist; else null. It stays the view's until
    /// `endDisplaying`. The grid owns it.
    PhotoGridCell* displayItem(int item);
    /// The view is gone: the tile is used again, where it can for the same photo, so that a list that is shown anew
    /// has its pictures. One that is unknown is ignored.
    void endDisplaying(const QObject* cell);

    /// By a tap or by `selectItem`.
    const std::set<int>& indexPathsForSelectedItems() const { return m_selected; }
    /// Whether the item is one of them.
    bool isSelected(int item) const { return m_selected.contains(item); }
    /// In the place of the one before, where one alone can be selected.
    void selectItem(int item);
    /// Nothing where it isn't selected.
    void deselectItem(int item);

    /// A user's tap: selects the item, or takes the selection back where several can be selected.
    void tapItem(int item);

private:
    using Cells = std::vector<std::unique_ptr<PhotoGridCell>>;

    std::unique_ptr<PhotoGridCell> takeCell(int item);
    Cells::iterator spareFor(int item);
    void emptyCell(PhotoGridCell& cell, int item);
    void fillCell(PhotoGridCell& cell, int item);
    void mark(int item, bool selected);
    void tapSelectedItem(int item);
    void followChanges(const PHFetchResultChangeDetails& changes);

    PhotoGridDelegate& m_delegate;
    PhotoGridModel m_model;
    Cells m_displayed;
    Cells m_spare;
    std::set<int> m_selected;
};

} // namespace lamina
