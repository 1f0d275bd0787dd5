#include "picker/YMSPhotoPickerViewController.h"

#include "picker/YMSCameraCell.h"
#include "platform/base/Localization.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/media/AVCaptureSession.h"
#include "platform/photos/PHAssetChangeRequest.h"
#include "platform/photos/PHAssetCollectionChangeRequest.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/view/FailureAlert.h"

#include <utility>

// A photo that is taken from within the photo picker.

namespace lamina {

namespace {

constexpr int kCameraItem = 0;

/// Adds a new photo to the change under way, and to an album of the user's; gives its identifier.
std::string requestPhoto(const UIImage& image, const std::optional<CollectionItem>& shown)
{
    auto* const creation = PHAssetChangeRequest::creationRequestForAssetFromImage(image);
    if (!creation)
        return {};
    const PHObjectPlaceholder& placeholder = creation->placeholderForCreatedAsset();
    if (shown && shown->collection.assetCollectionType != PHAssetCollectionType::SmartAlbum)
        PHAssetCollectionChangeRequest::changeRequestForAssetCollection(shown->collection)->addAssets({placeholder});
    return placeholder.localIdentifier;
}

} // namespace

YMSCameraCell* YMSPhotoPickerViewController::cameraTile() const
{
    return dynamic_cast<YMSCameraCell*>(m_grid.cellForItem(kCameraItem));
}

/// A camera is opened once: what lies over the grid may want it, and nobody sees the tile.
void YMSPhotoPickerViewController::pauseCamera()
{
    const auto over = std::dynamic_pointer_cast<UIImagePickerController>(presentedViewController());
    m_takesPhoto = over && over->sourceType() == UIImagePickerControllerSourceType::Camera;
    if (YMSCameraCell* const tile = cameraTile())
        tile->closeCamera();
}

void YMSPhotoPickerViewController::camerasChanged()
{
    if (YMSCameraCell* const tile = cameraTile())
        tile->updateAvailability();
    if (isAppearing() && !presentedViewController())
        reloadCameraUnlessRunning();
}

void YMSPhotoPickerViewController::reloadCameraUnlessRunning()
{
    m_takesPhoto = false;
    if (const auto camera = session(); camera && camera->isRunning())
        return;
    if (YMSCameraCell* const tile = cameraTile())
        tile->closeCamera(); // one that has ended is opened anew
    m_grid.reloadItem(kCameraItem);
}

void YMSPhotoPickerViewController::imagePickerControllerDidCancel(UIImagePickerController& picker)
{
    picker.dismiss(true, [self = sharedSelf()] {
        self->m_grid.deselectItem(kCameraItem);
        self->reloadCameraUnlessRunning();
    });
}

void YMSPhotoPickerViewController::imagePickerController(UIImagePickerController& picker,
                                                         const UIImagePickerInfo& didFinishPickingMediaWithInfo)
{
    picker.dismiss(true, [self = sharedSelf(), image = didFinishPickingMediaWithInfo.originalImage] {
        self->reloadCameraUnlessRunning();
        if (image)
            self->savePhoto(image);
    });
}

void YMSPhotoPickerViewController::savePhoto(const UIImage& image)
{
    const auto identifier = std::make_shared<std::string>();
    PHPhotoLibrary::performChanges(
        [image, identifier, item = m_currentCollectionItem] { *identifier = requestPhoto(image, item); },
        [self = weakSelf(), image, identifier](const Outcome& outcome) {
            DispatchQueue::main().async([self, image, identifier, outcome] {
                if (const auto picker = self.lock())
                    picker->photoSaved(image, *identifier, outcome);
            });
        });
}

void YMSPhotoPickerViewController::photoSaved(const UIImage& image, const std::string& identifier,
                                              const Outcome& outcome)
{
    if (outcome) {
        m_needToSelectFirstPhoto = true;
        m_takenPhoto = identifier;
    }
    if (!allowsMultipleSelection())
        deliver(image);
    else if (!outcome)
        presentFailure(*this, localizedString(QT_TRANSLATE_NOOP("Lamina", "Can’t save the photo")), outcome.error());
}

} // namespace lamina
