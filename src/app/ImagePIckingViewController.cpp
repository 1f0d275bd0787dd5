#include "app/ImagePIckingViewController.h"

#include "app/MainStoryboard.h"
#include "app/PinchZoomViewController.h"
#include "editors/blend/PhotoCutting.h"
#include "editors/blend/PickedImages.h"
#include "platform/base/Localization.h"
#include "platform/base/UIScreen.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIStoryboard.h"

#include <utility>
#include <vector>

namespace lamina {

namespace {

QString backdropName()
{
    return firstPickedImage ? QStringLiteral("SCREEN2bg") : QStringLiteral("SCREENbg");
}

bool cameraIsThere()
{
    return UIImagePickerController::isSourceTypeAvailable(UIImagePickerControllerSourceType::Camera);
}

} // namespace

ImagePIckingViewController::ImagePIckingViewController()
    : m_selectImage(backdropName())
    , m_cameraAvailable(cameraIsThere())
    , m_camerasObserver(kAVCaptureDevicesDidChangeNotification, [this] { lookForCamera(); })
{
}

ImagePIckingViewController::~ImagePIckingViewController() = default;

int ImagePIckingViewController::step() const
{
    return m_selectImage == QLatin1String("SCREENbg") ? 1 : 2;
}

void ImagePIckingViewController::viewWillAppear(bool animated)
{
    UIViewController::viewWillAppear(animated);
    lookForCamera();
    readSlots();
}

void ImagePIckingViewController::lookForCamera()
{
    if (std::exchange(m_cameraAvailable, cameraIsThere()) != m_cameraAvailable)
        emit cameraAvailableChanged();
}

void ImagePIckingViewController::readSlots()
{
    if (m_selectImage != backdropName()) {
        m_selectImage = backdropName();
        emit selectImageChanged();
    }
    if (m_firstPhotoSetAside != isFirstImageSetAside()) {
        m_firstPhotoSetAside = !m_firstPhotoSetAside;
        emit firstPhotoSetAsideChanged();
    }
}

void ImagePIckingViewController::useFirstPhotoAgain()
{
    if (!isFree())
        return;
    m_waiting.clear();
    takeFirstImageAgain();
    readSlots();
}

void ImagePIckingViewController::viewDidAppear(bool animated)
{
    UIViewController::viewDidAppear(animated);
    openWaitingPhoto();
}

void ImagePIckingViewController::backButton()
{
    forgetImageSetAside();
    if (const auto stack = navigationController())
        stack->popViewController(true);
}

void ImagePIckingViewController::galleryButton()
{
    if (cameraIsThere()) {
        pickByHand(UIImagePickerControllerSourceType::Camera);
        return;
    }
    present(UIAlertController::make(localizedString("Camera Unavailable"),
                                    localizedString("Unable to find a camera on your device."),
                                    {{localizedString("OK"), UIAlertActionStyle::Default, {}}}),
            true);
}

void ImagePIckingViewController::cameraButton()
{
    pickByHand(UIImagePickerControllerSourceType::PhotoLibrary);
}

void ImagePIckingViewController::pickByHand(UIImagePickerControllerSourceType source)
{
    if (m_leadsToCrop)
        return;
    m_waiting.clear(); // a user who picks by hand has other plans
    present(makePicker(source), true);
}

std::shared_ptr<UIImagePickerController>
ImagePIckingViewController::makePicker(UIImagePickerControllerSourceType source)
{
    return makeCropPicker(std::shared_ptr<UIImagePickerControllerDelegate>(shared_from_this(), this), source,
                          UIScreen::main().bounds.width, step());
}

void ImagePIckingViewController::imagePickerControllerDidCancel(UIImagePickerController& picker)
{
    m_waiting.clear();
    picker.dismiss(true);
}

void ImagePIckingViewController::imagePickerController(UIImagePickerController& picker,
                                                       const UIImagePickerInfo& didFinishPickingMediaWithInfo)
{
    const auto self = std::static_pointer_cast<ImagePIckingViewController>(shared_from_this());
    m_leadsToCrop = true;
    picker.dismiss(true, [self, container = parentViewController(), photo = didFinishPickingMediaWithInfo] {
        self->m_leadsToCrop = false;
        if (self->parentViewController() != container) // this screen was left meanwhile
            return;
        const auto crop = UIStoryboard::named(kMainStoryboard)->instantiate<PinchZoomViewController>(scene::kCrop);
        if (!crop)
            return;
        crop->pickedImage = photo.originalImage;
        crop->pickedSource = photo.source;
        crop->setModalPresentationStyle(UIModalPresentationStyle::CurrentContext);
        self->present(crop, true);
        presentDamage(*self, {photo.name, photo.damage});
    });
}

bool ImagePIckingViewController::wantsPhotos() const
{
    return isFree() && !isPhotoDue();
}

void ImagePIckingViewController::receivePhotos(std::vector<PhotoSource> photos)
{
    if (!wantsPhotos())
        return;
    m_waiting.clear();
    std::size_t wanted = firstPickedImage ? 2 : 1;
    m_leftOut = 0;
    for (PhotoSource& photo : photos) {
        if (wanted <= kPhotosOfABlend)
            m_waiting.push_back({std::move(photo), static_cast<int>(wanted++)});
        else
            ++m_leftOut;
    }
    openWaitingPhoto();
}

/// A photo for the second step waits until the first one is cropped.
void ImagePIckingViewController::openWaitingPhoto()
{
    if (!isPhotoDue() || !isAppearing() || !isFree())
        return;
    if (const std::size_t count = std::exchange(m_leftOut, 0); count > 0)
        return presentLeftOut(*this, count, [self = shared_from_this(), this] { openWaitingPhoto(); });
    const auto picker = makePicker(UIImagePickerControllerSourceType::PhotoLibrary);
    picker->setPreselected(std::move(m_waiting.front().photo));
    m_waiting.pop_front();
    present(picker, true);
}

} // namespace lamina
