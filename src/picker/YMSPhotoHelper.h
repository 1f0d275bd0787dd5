#pragma once

#include "picker/YMSPhotoPickerViewController.h"
#include "picker/YMSPhotoPickerViewControllerDelegate.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/UIImagePickerController.h"
#include "platform/view/UIViewController.h"

#include <memory>

namespace lamina {

/// Gives the picker its delegate and presents it, animated, once the user lets the application into the photo
/// library; asks for that first where it is not settled. Where access is refused the picker is not shown, and
/// `delegate` hears of it, if it wants to, with the picker. For access to a part of the library nothing happens. All
/// three live until the question is answered. Main thread.
void yms_presentCustomAlbumPhotoView(UIViewController& presenter, std::shared_ptr<YMSPhotoPickerViewController> picker,
                                     std::shared_ptr<YMSPhotoPickerViewControllerDelegate> delegate);

/// The same with a new picker, for one photo.
void yms_presentAlbumPhotoViewWithDelegate(UIViewController& presenter,
                                           std::shared_ptr<YMSPhotoPickerViewControllerDelegate> delegate);

/// Presents the system's camera, animated, once the user lets the application at it; asks for that first where it is
/// not settled. Without a camera nothing happens. Where access is refused and `delegate` is a photo picker, that one's
/// own delegate hears of it, if it wants to. Both live until the question is answered. Main thread.
void yms_presentCameraCaptureViewWithDelegate(UIViewController& presenter,
                                              std::shared_ptr<UIImagePickerControllerDelegate> delegate);

/// The picture as it is when its orientation is up; else the same with its pixels moved so that it is. Empty when
/// memory is short. From any thread.
UIImage yms_orientationNormalizedImage(const UIImage& image);

} // namespace lamina
