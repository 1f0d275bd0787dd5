#pragma once

#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PHAsset.h"

#include <vector>

namespace lamina {

class YMSPhotoPickerViewController;

/// Hears what became of a photo picker. Every call is optional: the picker makes those alone that `respondsTo` names,
/// and does without the delegate where one is not named. After a finish the delegate dismisses the picker. Main thread.
class YMSPhotoPickerViewControllerDelegate {
public:
    /// The calls below, by their names.
    enum class Call {
        DidCancel,
        DidFinishPickingImage,
        DidFinishPickingImages,
        DidReceivePhotoAlbumAccessDenied,
        DidReceiveCameraAccessDenied,
    };

    virtual ~YMSPhotoPickerViewControllerDelegate() = default;

    /// True for the calls that this delegate wants; default none.
    virtual bool respondsTo(Call) const { return false; }

    /// The cancel button. Not wanted: the picker dismisses itself.
    virtual void photoPickerViewControllerDidCancel(YMSPhotoPickerViewController&) {}
    /// A picker for one photo has its picture, upright.
    virtual void photoPickerViewController(YMSPhotoPickerViewController&, const UIImage& /*didFinishPickingImage*/) {}
    /// The done button: the chosen photos in the order of choice, of which there can be fewer than the picker's limit.
    virtual void photoPickerViewController(YMSPhotoPickerViewController&,
                                           const std::vector<PHAsset>& /*didFinishPickingImages*/)
    {
    }
    /// The library is closed to the application; the picker was not presented.
    virtual void photoPickerViewControllerDidReceivePhotoAlbumAccessDenied(YMSPhotoPickerViewController&) {}
    /// The camera is closed to the application; the picker stays.
    virtual void photoPickerViewControllerDidReceiveCameraAccessDenied(YMSPhotoPickerViewController&) {}
};

} // namespace lamina
