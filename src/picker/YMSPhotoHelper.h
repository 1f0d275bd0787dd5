#pragma once

#include "picker/YMSPhotoPickerViewController.h"
#include "picker/YMSPhotoPickerViewControllerDelegate.h"
#include "platform/view/UIViewController.h"

#include <memory>

namespace lamina {

/// Gives the picker its delegate and presents it, animated, once the user lets the application into the photo
/// library; asks for that first where it is not settled. Where access is refused the picker is not shown, and
/// `delegate` hears of it, if it wants to, with the picker. For access to a part of the library nothing happens. All
/// three live until the question is answered. Main thread.
void yms_presentCustomAlbumPhotoView(UIViewController& presenter, std::shared_ptr<YMSPhotoPickerViewController> picker,
                                     std::shared_ptr<YMSPhotoPickerViewControllerDelegate> delegate);

} // namespace lamina
