#include "picker/YMSPhotoHelper.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <utility>

namespace lamina {

namespace {

/// Those who take part in one guarded presentation.
struct Presentation {
    std::shared_ptr<UIViewController> presenter;
    std::shared_ptr<YMSPhotoPickerViewController> picker;
    std::shared_ptr<YMSPhotoPickerViewControllerDelegate> delegate;

    void proceed() const
    {
        picker->setDelegate(delegate);
        presenter->present(picker, true);
    }
    void refuse() const
    {
        using Call = YMSPhotoPickerViewControllerDelegate::Call;
        if (delegate && delegate->respondsTo(Call::DidReceivePhotoAlbumAccessDenied))
            delegate->photoPickerViewControllerDidReceivePhotoAlbumAccessDenied(*picker);
    }
    void ask() const
    {
        // The answer may come from any thread, but the screens are the main one's, and so is the last hold on them.
        PHPhotoLibrary::requestAuthorization([all = *this](PHAuthorizationStatus status) mutable {
            DispatchQueue::main().async([all = std::move(all), status] {
                if (status == PHAuthorizationStatus::Authorized)
                    all.proceed();
                else
                    all.refuse();
            });
        });
    }
};

/// Those who take part in one guarded use of the camera.
struct CameraUse {
    std::shared_ptr<UIViewController> presenter;
    std::shared_ptr<UIImagePickerControllerDelegate> delegate;

    void proceed() const
    {
        const auto camera = std::make_shared<UIImagePickerController>();
        camera->setDelegate(delegate);
        camera->setSourceType(UIImagePickerControllerSourceType::Camera);
        camera->setTitle(localizedString("Take a photo"));
        camera->setModalPresentationStyle(UIModalPresentationStyle::CurrentContext);
        presenter->present(camera, true);
    }
    void refuse() const
    {
        using Call = YMSPhotoPickerViewControllerDelegate::Call;
        auto* const picker = dynamic_cast<YMSPhotoPickerViewController*>(delegate.get());
        const auto heard = picker ? picker->delegate() : nullptr;
        if (heard && heard->respondsTo(Call::DidReceiveCameraAccessDenied))
            heard->photoPickerViewControllerDidReceiveCameraAccessDenied(*picker);
    }
    void ask() const
    {
        AVCaptureDevice::requestVideoAccess([all = *this](bool granted) mutable {
            DispatchQueue::main().async([all = std::move(all), granted] { granted ? all.proceed() : all.refuse(); });
        });
    }
};

} // namespace

void yms_presentCustomAlbumPhotoView(UIViewController& presenter, std::shared_ptr<YMSPhotoPickerViewController> picker,
                                     std::shared_ptr<YMSPhotoPickerViewControllerDelegate> delegate)
{
    const Presentation presentation{presenter.shared_from_this(), std::move(picker), std::move(delegate)};
    switch (PHPhotoLibrary::authorizationStatus()) {
    case PHAuthorizationStatus::Authorized:
        presentation.proceed();
        break;
    case PHAuthorizationStatus::Restricted:
    case PHAuthorizationStatus::Denied:
        presentation.refuse();
        break;
    case PHAuthorizationStatus::NotDetermined:
        presentation.ask();
        break;
    default: // a part of the library alone is not enough to choose from, and refusal would be untrue
        break;
    }
}

void yms_presentAlbumPhotoViewWithDelegate(UIViewController& presenter,
                                           std::shared_ptr<YMSPhotoPickerViewControllerDelegate> delegate)
{
    yms_presentCustomAlbumPhotoView(presenter, std::make_shared<YMSPhotoPickerViewController>(), std::move(delegate));
}

void yms_presentCameraCaptureViewWithDelegate(UIViewController& presenter,
                                              std::shared_ptr<UIImagePickerControllerDelegate> delegate)
{
    if (!UIImagePickerController::isSourceTypeAvailable(UIImagePickerControllerSourceType::Camera))
        return;
    const CameraUse use{presenter.shared_from_this(), std::move(delegate)};
    switch (AVCaptureDevice::videoAuthorizationStatus()) {
    case AVAuthorizationStatus::Authorized:
        use.proceed();
        break;
    case AVAuthorizationStatus::Restricted:
    case AVAuthorizationStatus::Denied:
        use.refuse();
        break;
    case AVAuthorizationStatus::NotDetermined:
        use.ask();
        break;
    }
}

UIImage yms_orientationNormalizedImage(const UIImage& image)
{
    return image.upright();
}

} // namespace lamina
