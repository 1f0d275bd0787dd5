// Another photo for the current slot of a collage, from the gallery or the camera.

#include "editors/collage/CreateCollageViewController.h"

namespace lamina {

void CreateCollageViewController::launchSpecialController() {}

bool CreateCollageViewController::respondsTo(Call) const
{
    return false;
}

void CreateCollageViewController::photoPickerViewController(YMSPhotoPickerViewController&, const UIImage&) {}

void CreateCollageViewController::photoPickerViewController(YMSPhotoPickerViewController&, const std::vector<PHAsset>&)
{
}

void CreateCollageViewController::photoPickerViewControllerDidReceivePhotoAlbumAccessDenied(
    YMSPhotoPickerViewController&)
{
}

void CreateCollageViewController::photoPickerViewControllerDidReceiveCameraAccessDenied(YMSPhotoPickerViewController&)
{
}

void CreateCollageViewController::imagePickerControllerDidCancel(UIImagePickerController&) {}

void CreateCollageViewController::imagePickerController(UIImagePickerController&, const UIImagePickerInfo&) {}

} // namespace lamina
