#include "picker/PhotoGrid.h"

#include "picker/YMSCameraCell.h"
#include "picker/YMSPhotoCell.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <utility>

namespace lamina {

namespace {

constexpr int kCameraItem = 0;

/// Where an item stands after a change; nothing: it is gone.
std::optional<int> itemAfter(int item, const PHFetchResultChangeDetails& changes)
{
    if (item == kCameraItem)
        return item;
    std::size_t photo = static_cast<std::size_t>(item) - 1;
    const std::vector<std::size_t>& removed = changes.removedIndexes();
    const auto gone = std::ranges::lower_bound(removed, photo);
    if (gone != removed.end() && *gone == photo)
        return std::nullopt;
    photo -= static_cast<std::size_t>(gone - removed.begin());
    for (const std::size_t inserted : changes.insertedIndexes()) {
        if (inserted > photo)
            break;
        ++photo;
    }
    return static_cast<int>(photo) + 1;
}

} // namespace

PhotoGrid::PhotoGrid(PhotoGridDelegate& delegate)
    : m_delegate(delegate)
{
}

PhotoGrid::~PhotoGrid() = default;

void PhotoGrid::reloadData(PHFetchResult photos)
{
    m_selected.clear();
    for (const auto& cell : m_displayed)
        cell->m_item = -1;
    m_model.reset(std::move(photos));
}

void PhotoGrid::performBatchUpdates(const PHFetchResultChangeDetails& changes, const std::vector<int>& reloaded)
{
    followChanges(changes);
    m_model.update(changes);
    for (const int item : reloaded)
        reloadItem(item);
    refreshPhotoCells();
}

void PhotoGrid::refreshPhotoCells()
{
    for (std::size_t i = 0; i < m_displayed.size(); ++i)
        if (auto* const cell = dynamic_cast<YMSPhotoCell*>(m_displayed[i].get()); cell && cell->m_item > kCameraItem)
            m_delegate.refreshPhotoCell(*cell, cell->m_item);
}

void PhotoGrid::followChanges(const PHFetchResultChangeDetails& changes)
{
    for (const auto& cell : m_displayed)
        if (cell->m_item >= 0)
            cell->m_item = itemAfter(cell->m_item, changes).value_or(-1);
    std::set<int> selected;
    for (const int item : m_selected)
        if (const std::optional<int> after = itemAfter(item, changes))
            selected.insert(*after);
    m_selected = std::move(selected);
}

void PhotoGrid::reloadItem(int item)
{
    m_selected.erase(item);
    if (PhotoGridCell* const cell = cellForItem(item))
        fillCell(*cell, item);
    m_model.reload(item);
}

PhotoGridCell* PhotoGrid::cellForItem(int item) const
{
    const auto found =
        std::ranges::find_if(m_displayed, [&](const auto& cell) { return item >= 0 && cell->item() == item; });
    return found == m_displayed.end() ? nullptr : found->get();
}

YMSPhotoCell* PhotoGrid::photoCellForItem(int item) const
{
    return dynamic_cast<YMSPhotoCell*>(cellForItem(item));
}

YMSPhotoCell* PhotoGrid::photoCellShowing(const PHAsset& asset, const YMSPhotoCell& except) const
{
    for (const auto& cell : m_displayed)
        if (auto* const photo = dynamic_cast<YMSPhotoCell*>(cell.get());
            photo && photo != &except && photo->represents(asset) && photo->thumbnailImage())
            return photo;
    return nullptr;
}

PhotoGridCell* PhotoGrid::displayItem(int item)
{
    if (item < 0 || item >= numberOfItems())
        return nullptr;
    // A view that comes for an item takes the place of one that is about to leave.
    if (PhotoGridCell* const former = cellForItem(item))
        former->m_item = -1;
    m_displayed.push_back(takeCell(item));
    PhotoGridCell& cell = *m_displayed.back();
    fillCell(cell, item);
    return &cell;
}

std::unique_ptr<PhotoGridCell> PhotoGrid::takeCell(int item)
{
    const auto spare = spareFor(item);
    std::unique_ptr<PhotoGridCell> cell;
    if (spare != m_spare.end()) {
        cell = std::move(*spare);
        m_spare.erase(spare);
    } else if (item == kCameraItem) {
        cell = std::make_unique<YMSCameraCell>();
    } else {
        cell = std::make_unique<YMSPhotoCell>();
    }
    cell->setParent(&m_model); // or the first script that sees it would own it
    return cell;
}

/// One that has the photo's picture, else the one that has been spare for longest.
PhotoGrid::Cells::iterator PhotoGrid::spareFor(int item)
{
    const auto isOfKind = [&](const auto& cell) {
        return (dynamic_cast<YMSCameraCell*>(cell.get()) != nullptr) == (item == kCameraItem);
    };
    const PHAsset asset = m_delegate.assetOfItem(item);
    const auto found = std::ranges::find_if(m_spare, [&](const auto& cell) {
        const auto* const photo = dynamic_cast<YMSPhotoCell*>(cell.get());
        return photo && item != kCameraItem && photo->represents(asset);
    });
    return found != m_spare.end() ? found : std::ranges::find_if(m_spare, isOfKind);
}

void PhotoGrid::emptyCell(PhotoGridCell& cell, int item)
{
    auto* const photo = dynamic_cast<YMSPhotoCell*>(&cell);
    if (photo && photo->represents(m_delegate.assetOfItem(item)))
        photo->cancelImageRequest();
    else
        cell.prepareForReuse();
}

void PhotoGrid::fillCell(PhotoGridCell& cell, int item)
{
    emptyCell(cell, item);
    cell.m_item = item;
    if (auto* const photo = dynamic_cast<YMSPhotoCell*>(&cell))
        m_delegate.preparePhotoCell(*photo, item);
    else if (auto* const camera = dynamic_cast<YMSCameraCell*>(&cell))
        m_delegate.prepareCameraCell(*camera);
    cell.setSelected(isSelected(item));
}

void PhotoGrid::endDisplaying(const QObject* cell)
{
    const auto found = std::ranges::find_if(m_displayed, [&](const auto& shown) { return shown.get() == cell; });
    if (found == m_displayed.end())
        return;
    (*found)->m_item = -1;
    if (auto* const photo = dynamic_cast<YMSPhotoCell*>(found->get()))
        photo->endDisplaying();
    else if (auto* const camera = dynamic_cast<YMSCameraCell*>(found->get()))
        camera->closeCamera();
    (*found)->setSelected(false);
    m_spare.push_back(std::move(*found));
    m_displayed.erase(found);
}

void PhotoGrid::mark(int item, bool selected)
{
    if (selected)
        m_selected.insert(item);
    else
        m_selected.erase(item);
    if (PhotoGridCell* const cell = cellForItem(item))
        cell->setSelected(selected);
}

void PhotoGrid::selectItem(int item)
{
    if (item < 0 || item >= numberOfItems())
        return;
    if (!allowsMultipleSelection)
        for (const int other : std::set<int>(m_selected))
            if (other != item)
                mark(other, false);
    mark(item, true);
}

void PhotoGrid::deselectItem(int item)
{
    mark(item, false);
}

void PhotoGrid::tapItem(int item)
{
    if (item < 0 || item >= numberOfItems())
        return;
    if (allowsMultipleSelection && isSelected(item)) {
        tapSelectedItem(item);
        return;
    }
    if (!m_delegate.shouldSelectItem(item))
        return;
    const std::set<int> former = allowsMultipleSelection ? std::set<int>() : m_selected;
    selectItem(item);
    for (const int other : former)
        m_delegate.didDeselectItem(other);
    m_delegate.didSelectItem(item);
}

void PhotoGrid::tapSelectedItem(int item)
{
    if (!m_delegate.shouldDeselectItem(item))
        return;
    deselectItem(item);
    m_delegate.didDeselectItem(item);
}

} // namespace lamina
