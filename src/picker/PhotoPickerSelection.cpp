#include "picker/YMSPhotoPickerViewController.h"

#include "picker/PickerTexts.h"
#include "picker/YMSPhotoCell.h"
#include "picker/YMSPhotoHelper.h"
#include "picker/YMSSinglePhotoViewController.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Localization.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/PHImageRequestOptions.h"
#include "platform/photos/PictureQueue.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIBarButtonItem.h"

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <utility>

// Which photos are chosen, and what a choice leads to.

namespace lamina {

namespace {

constexpr int kCameraItem = 0;

/// How a photo is asked for that is handed on: as it is, wherever it has to be fetched from.
PHImageRequestOptions fullImageOptions()
{
    return {.deliveryMode = PHImageRequestOptionsDeliveryMode::HighQualityFormat,
            .networkAccessAllowed = true,
            .resizeMode = PHImageRequestOptionsResizeMode::Exact};
}

CGSize fullSizeOf(const PHAsset& asset)
{
    return {static_cast<double>(asset.pixelWidth), static_cast<double>(asset.pixelHeight)};
}

} // namespace

bool YMSPhotoPickerViewController::canAddPhoto() const
{
    return numberOfPhotoToSelect == 0 || m_selectedPhotos.size() < numberOfPhotoToSelect;
}

QString YMSPhotoPickerViewController::selectionText() const
{
    if (!allowsMultipleSelection())
        return {};
    return numberOfPhotoToSelect == 0 ? QString::fromStdString(localizedText(QT_TRANSLATE_NOOP("Lamina", "%1 chosen"),
                                                                             {std::to_string(selectedCount())}))
                                      : countText(m_selectedPhotos.size());
}

/// "2 of 3", or the number alone where there is no limit.
QString YMSPhotoPickerViewController::countText(std::size_t number) const
{
    const std::string count = std::to_string(number);
    return QString::fromStdString(
        numberOfPhotoToSelect == 0
            ? count
            : localizedText(QT_TRANSLATE_NOOP("Lamina", "%1 of %2"), {count, std::to_string(numberOfPhotoToSelect)}));
}

std::optional<std::size_t> YMSPhotoPickerViewController::selectionIndexOf(const PHAsset& asset) const
{
    const auto found = std::ranges::find(m_selectedPhotos, asset);
    return found == m_selectedPhotos.end() ? std::nullopt
                                           : std::optional(static_cast<std::size_t>(found - m_selectedPhotos.begin()));
}

void YMSPhotoPickerViewController::tellSelection()
{
    if (doneItem())
        doneItem()->setEnabled(!m_selectedPhotos.empty());
    emit selectionChanged();
}

void YMSPhotoPickerViewController::addToSelection(const PHAsset& asset)
{
    m_selectedPhotos.push_back(asset);
    tellSelection();
}

/// The later numbers close up where they are seen; those of other albums get theirs when their tiles are made.
void YMSPhotoPickerViewController::removeFromSelection(const PHAsset& asset)
{
    const std::optional<std::size_t> place = selectionIndexOf(asset);
    if (!place)
        return;
    for (std::size_t later = *place + 1; later < m_selectedPhotos.size(); ++later) {
        const std::optional<int> item = itemOfAsset(m_selectedPhotos[later]);
        if (YMSPhotoCell* const cell = item ? m_grid.photoCellForItem(*item) : nullptr)
            cell->setSelectionOrder(cell->selectionOrder() - 1);
    }
    m_selectedPhotos.erase(m_selectedPhotos.begin() + static_cast<std::ptrdiff_t>(*place));
    tellSelection();
}

void YMSPhotoPickerViewController::refreshPhotoSelection()
{
    for (std::size_t place = 0; place < m_selectedPhotos.size(); ++place) {
        const std::optional<int> item = itemOfAsset(m_selectedPhotos[place]);
        if (!item)
            continue;
        m_grid.selectItem(*item);
        if (YMSPhotoCell* const cell = m_grid.photoCellForItem(*item))
            cell->setSelectionOrder(static_cast<int>(place) + 1);
    }
}

bool YMSPhotoPickerViewController::shouldSelectItem(int item)
{
    if (!canAddPhoto() || m_grid.isSelected(item))
        return false;
    if (YMSPhotoCell* const cell = m_grid.photoCellForItem(item)) {
        cell->setNeedsAnimateSelection();
        cell->setSelectionOrder(selectedCount() + 1);
    }
    return true;
}

void YMSPhotoPickerViewController::didSelectItem(int item)
{
    if (item == kCameraItem) {
        yms_presentCameraCaptureViewWithDelegate(*this, sharedSelf());
        return;
    }
    choose(assetOfItem(item));
}

void YMSPhotoPickerViewController::choose(const PHAsset& asset)
{
    if (!allowsMultipleSelection() && shouldReturnImageForSingleSelection) {
        requestFullImage(asset);
        return;
    }
    addToSelection(asset);
    if (!allowsMultipleSelection())
        finishPickingPhotos();
}

/// As a tap would, whether the photo is in the album on show or not.
void YMSPhotoPickerViewController::chooseByHand(const PHAsset& asset)
{
    if (const std::optional<int> item = itemOfAsset(asset)) {
        if (!shouldSelectItem(*item))
            return;
        m_grid.selectItem(*item);
    } else if (!canAddPhoto()) {
        return;
    }
    choose(asset);
}

bool YMSPhotoPickerViewController::shouldDeselectItem(int item)
{
    if (YMSPhotoCell* const cell = m_grid.photoCellForItem(item))
        cell->setNeedsAnimateSelection();
    return true;
}

void YMSPhotoPickerViewController::didDeselectItem(int item)
{
    if (item != kCameraItem)
        removeFromSelection(assetOfItem(item));
}

SinglePhotoState YMSPhotoPickerViewController::stateOfPhoto(const PHAsset& asset) const
{
    const std::optional<std::size_t> place = selectionIndexOf(asset);
    const bool allowed = !place && canAddPhoto();
    if (!allowsMultipleSelection() || (!place && !allowed))
        return {{}, allowed};
    return {countText(place ? *place + 1 : m_selectedPhotos.size() + 1), allowed};
}

void YMSPhotoPickerViewController::presentSinglePhoto(int item)
{
    if (item <= kCameraItem || item >= m_grid.numberOfItems() || presentedViewController())
        return;
    giveUpFullImage();
    const auto shown = std::make_shared<std::weak_ptr<YMSSinglePhotoViewController>>();
    const auto finished = [self = weakSelf(), shown](bool selected) {
        const auto large = shown->lock();
        if (!selected || !large)
            return;
        // The large photo is on its way out by then, so that a delegate who dismisses reaches the picker.
        DispatchQueue::main().async([self, asset = large->currentAsset()] {
            if (const auto picker = self.lock())
                picker->chooseByHand(asset);
        });
    };
    const auto large = std::make_shared<YMSSinglePhotoViewController>(assetOfItem(item), m_imageManager, finished);
    *shown = large;
    large->setNeighbours(m_currentCollectionItem->assets, static_cast<std::size_t>(item) - 1);
    large->setStateOfPhoto([self = weakSelf()](const PHAsset& asset) {
        const auto picker = self.lock();
        return picker ? picker->stateOfPhoto(asset) : SinglePhotoState();
    });
    present(large, true);
}

void YMSPhotoPickerViewController::cancelFullImage()
{
    if (m_fullImageRequest != PHInvalidImageRequestID)
        m_imageManager->cancelImageRequest(m_fullImageRequest);
    m_fullImageRequest = PHInvalidImageRequestID;
    m_isReadingFullImage = false;
    ++m_fullImageCount;
}

/// The user has turned to something else than the one photo that is being read.
void YMSPhotoPickerViewController::giveUpFullImage()
{
    if (!m_isReadingFullImage)
        return;
    cancelFullImage();
    for (const int item : std::set<int>(m_grid.indexPathsForSelectedItems()))
        m_grid.deselectItem(item); // it can be chosen again
}

/// The newest choice alone counts: one before it that is still being read is given up.
void YMSPhotoPickerViewController::requestFullImage(const PHAsset& asset)
{
    cancelFullImage();
    m_isReadingFullImage = true;
    PHImageRequestOptions options = fullImageOptions();
    const auto damage = std::make_shared<Error>(Error{shownFileName(asset).toStdString(), {}});
    options.warningHandler = [damage](const std::string& warning) { damage->cause = warning; };
    m_fullImageRequest =
        m_imageManager->requestImageForAsset(asset, fullSizeOf(asset), PHImageContentMode::AspectFill, options,
                                             [self = weakSelf(), asset, damage](const UIImage& image) {
                                                 const auto picker = self.lock();
                                                 if (!picker)
                                                     return;
                                                 picker->fullImageArrived(asset, image);
                                                 presentDamage(*picker, *damage);
                                             });
}

void YMSPhotoPickerViewController::fullImageArrived(const PHAsset& asset, const UIImage& image)
{
    m_fullImageRequest = PHInvalidImageRequestID;
    if (image)
        deliver(yms_orientationNormalizedImage(image));
    else
        findFailure(asset);
}

/// The manager doesn't say why there is no picture: the photo is read once more to know.
void YMSPhotoPickerViewController::findFailure(const PHAsset& asset)
{
    pictureQueue().async([self = weakSelf(), asset, count = m_fullImageCount,
                          expected = DispatchQueue::main().expectWork()] {
        Error damage{shownFileName(asset).toStdString(), {}};
        auto read =
            loadAssetPicture({asset, fullSizeOf(asset), PHImageContentMode::AspectFill, fullImageOptions().resizeMode},
                             nullptr, &damage.cause);
        DispatchQueue::main().async([self, count, read = std::move(read), damage] {
            const auto picker = self.lock();
            if (!picker || picker->m_fullImageCount != count)
                return;
            if (!read) {
                picker->tellFailure(read.error());
                return;
            }
            picker->deliver(yms_orientationNormalizedImage(*read));
            presentDamage(*picker, damage);
        });
    });
}

void YMSPhotoPickerViewController::tellFailure(const Error& error)
{
    m_isReadingFullImage = false;
    const auto leave = [self = weakSelf()] {
        if (const auto picker = self.lock())
            picker->cancelPicking();
    };
    presentOverTop(*this, UIAlertController::make(localizedString("Can’t open the photo"), failureText(error),
                                                  {{localizedString("OK"), UIAlertActionStyle::Default, leave}}));
}

void YMSPhotoPickerViewController::deliver(const UIImage& image)
{
    m_isReadingFullImage = false;
    if (m_hasLeft)
        return;
    const auto heard = delegate();
    if (heard && heard->respondsTo(YMSPhotoPickerViewControllerDelegate::Call::DidFinishPickingImage))
        heard->photoPickerViewController(*this, image);
    else
        cancelPicking();
    m_hasLeft = !presentingViewController();
}

} // namespace lamina
