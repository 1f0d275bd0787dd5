#include "picker/YMSPhotoPickerViewController.h"

#include "picker/PickerThemeValues.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/photos/PHCachingImageManager.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/view/UIBarButtonItem.h"

namespace lamina {

using Call = YMSPhotoPickerViewControllerDelegate::Call;

YMSPhotoPickerViewController::YMSPhotoPickerViewController()
    : m_camerasObserver(kAVCaptureDevicesDidChangeNotification, [this] { camerasChanged(); })
{
    connect(&m_bar.topConstraint(), &AnimatedProperty::valueChanged, this,
            &YMSPhotoPickerViewController::barOffsetChanged);
    connect(&m_bar.alpha(), &AnimatedProperty::valueChanged, this, &YMSPhotoPickerViewController::barAlphaChanged);
}

YMSPhotoPickerViewController::~YMSPhotoPickerViewController() = default;

void YMSPhotoPickerViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    m_imageManager = std::make_shared<PHCachingImageManager>();
    m_themeValues = themeValues(theme());
    m_grid.allowsMultipleSelection = allowsMultipleSelection();
    fetchCollections();
    if (allowsMultipleSelection()) {
        setRightBarButtonItem(
            std::make_shared<UIBarButtonItem>(UIBarButtonSystemItem::Done, [this] { finishPickingPhotos(); }));
        doneItem()->setEnabled(false);
    }
    updateViewWithCollectionItem(m_collectionItems.empty() ? std::nullopt : std::optional(m_collectionItems.front()));
    updateLibraryState();
}

void YMSPhotoPickerViewController::viewWillAppear(bool animated)
{
    UIViewController::viewWillAppear(animated);
    m_hasLeft = false;
    PHPhotoLibrary::registerChangeObserver(weakSelf());
    catchUpWithLibrary();
    if (!m_takesPhoto) // it is the last to hear that the camera's screen has gone
        reloadCameraUnlessRunning();
}

void YMSPhotoPickerViewController::viewWillDisappear(bool animated)
{
    UIViewController::viewWillDisappear(animated);
    PHPhotoLibrary::unregisterChangeObserver(this);
    pauseCamera();
}

void YMSPhotoPickerViewController::cancelPicking()
{
    cancelFullImage();
    const auto heard = delegate();
    if (heard && heard->respondsTo(Call::DidCancel))
        heard->photoPickerViewControllerDidCancel(*this);
    else
        dismiss(true);
}

void YMSPhotoPickerViewController::finishPickingPhotos()
{
    if (m_selectedPhotos.empty() || m_hasLeft)
        return;
    const auto heard = delegate();
    if (!heard || !heard->respondsTo(Call::DidFinishPickingImages)) {
        cancelPicking();
        return;
    }
    const std::vector<PHAsset> chosen = m_selectedPhotos;
    heard->photoPickerViewController(*this, chosen);
    m_hasLeft = !presentingViewController();
}

} // namespace lamina
