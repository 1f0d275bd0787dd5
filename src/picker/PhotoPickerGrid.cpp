#include "picker/YMSPhotoPickerViewController.h"

#include "picker/PickerTexts.h"
#include "picker/YMSCameraCell.h"
#include "picker/YMSPhotoCell.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/FreeMemory.h"
#include "platform/base/Localization.h"
#include "platform/base/UIScreen.h"
#include "platform/media/AVCaptureSession.h"

#include <cmath>

// The tiles of the photo picker, where they stand, and the bar over them.

namespace lamina {

namespace {

constexpr int kCameraItem = 0;
/// Thumbnails have fewer pixels than the screen: at their size nobody sees it, and they come sooner.
constexpr double kThumbnailScale = 0.75;
/// For tiles that are asked for before the grid has a place, points.
constexpr double kUnplacedSide = 118;

} // namespace

PHAsset YMSPhotoPickerViewController::assetOfItem(int item) const
{
    if (!m_currentCollectionItem || item <= kCameraItem)
        return {};
    return m_currentCollectionItem->assets.objectAtIndex(static_cast<std::size_t>(item) - 1);
}

std::optional<int> YMSPhotoPickerViewController::itemOfAsset(const PHAsset& asset) const
{
    if (!m_currentCollectionItem)
        return std::nullopt;
    const std::optional<std::size_t> index = m_currentCollectionItem->assets.indexOfObject(asset);
    return index ? std::optional(static_cast<int>(*index) + 1) : std::nullopt;
}

void YMSPhotoPickerViewController::prepareCameraCell(YMSCameraCell& cell)
{
    cell.updateAvailability();
    m_session = cell.session();
    startSession();
}

void YMSPhotoPickerViewController::startSession()
{
    if (const auto camera = session(); camera && !camera->isRunning())
        DispatchQueue::main().async([camera] { camera->startRunning(); });
}

void YMSPhotoPickerViewController::preparePhotoCell(YMSPhotoCell& cell, int item)
{
    const PHAsset asset = assetOfItem(item);
    if (const YMSPhotoCell* const other = m_grid.photoCellShowing(asset, cell))
        cell.borrowThumbnail(*other);
    loadThumbnail(cell, asset);
    if (const std::optional<std::size_t> place = selectionIndexOf(asset)) {
        cell.setSelectionOrder(static_cast<int>(*place) + 1);
        m_grid.selectItem(item);
    }
}

void YMSPhotoPickerViewController::refreshPhotoCell(YMSPhotoCell& cell, int item)
{
    const PHAsset asset = assetOfItem(item);
    if (cell.represents(asset) && cell.targetSize().width >= thumbnailSize().width && cell.shownSide() >= shownSide())
        return;
    cell.cancelImageRequest();
    loadThumbnail(cell, asset);
}

CGSize YMSPhotoPickerViewController::thumbnailSize() const
{
    const double side = m_measures.cellSide > 0 ? m_measures.cellSide : kUnplacedSide;
    const double pixels = side * UIScreen::main().scale * kThumbnailScale;
    return {pixels, pixels};
}

/// Tiles differ by a pixel, so that a row is filled.
int YMSPhotoPickerViewController::shownSide() const
{
    return static_cast<int>(std::ceil(m_measures.cellSide * m_displayScale)) + (m_displayScale > 0 ? 1 : 0);
}

void YMSPhotoPickerViewController::loadThumbnail(YMSPhotoCell& cell, const PHAsset& asset)
{
    cell.setRepresentedAsset(asset);
    cell.setShownSide(shownSide());
    cell.loadPhotoWithManager(m_imageManager, asset, thumbnailSize());
}

void YMSPhotoPickerViewController::animateHighlight(int item, bool highlighted)
{
    if (YMSPhotoCell* const cell = m_grid.photoCellForItem(item))
        cell->animateHighlight(highlighted);
}

QString YMSPhotoPickerViewController::itemDescription(int item) const
{
    if (item == kCameraItem)
        return QString::fromStdString(
            UIImagePickerController::isSourceTypeAvailable(UIImagePickerControllerSourceType::Camera)
                ? localizedString(QT_TRANSLATE_NOOP("Lamina", "Take a photo"))
                : localizedString(QT_TRANSLATE_NOOP("Lamina", "No camera")));
    const PHAsset asset = assetOfItem(item);
    const std::string day = dayText(asset.creationDate).toStdString();
    const std::optional<std::size_t> place = selectionIndexOf(asset);
    if (!place)
        return QString::fromStdString(localizedText(QT_TRANSLATE_NOOP("Lamina", "Photo, %1"), {day}));
    return QString::fromStdString(
        localizedText(QT_TRANSLATE_NOOP("Lamina", "Photo, %1, chosen, number %2"), {day, std::to_string(*place + 1)}));
}

QString YMSPhotoPickerViewController::dayOfItem(int item) const
{
    const PHAsset asset = assetOfItem(item);
    return asset.localIdentifier.empty() ? QString() : dayText(asset.creationDate);
}

int YMSPhotoPickerViewController::itemOfPhoto(const QString& identifier) const
{
    PHAsset asset;
    asset.localIdentifier = identifier.toStdString();
    return asset.localIdentifier.empty() ? -1 : itemOfAsset(asset).value_or(-1);
}

void YMSPhotoPickerViewController::placeGrid(double width, double height, double spacing, double left, double right,
                                             double displayScale)
{
    const PhotoGridPlace place{{width, height}, spacing, left, right};
    if ((place == m_place && displayScale == m_displayScale) || !(width > 0 && height > 0))
        return;
    m_place = place;
    m_displayScale = displayScale;
    m_measures = isPortraitGrid(place) ? portraitMeasures(place) : landscapeMeasures(place);
    emit gridChanged();
    m_grid.refreshPhotoCells(); // larger tiles want larger pictures
}

void YMSPhotoPickerViewController::scrollViewDidScroll(double y, double viewHeight, double contentHeight)
{
    m_bar.scrollViewDidScroll({0, y}, viewHeight, contentHeight);
}

void YMSPhotoPickerViewController::scrollViewDidEndDragging(bool /*willDecelerate*/)
{
    m_bar.scrollViewDidEndDragging();
}

void YMSPhotoPickerViewController::scrollViewDidComeToRest()
{
    m_bar.scrollViewDidComeToRest();
    returnFreeMemory(); // of the tiles that have passed by
}

} // namespace lamina
