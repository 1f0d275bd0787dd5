#include "picker/YMSPhotoHelper.h"

#include "platform/base/DispatchQueue.h"
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

} // namespace lamina
