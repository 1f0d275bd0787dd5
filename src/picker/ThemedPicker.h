#pragma once

#include "picker/YMSPhotoPickerViewController.h"
#include "platform/view/UIViewController.h"

#include <memory>

namespace lamina {

/// A picker for that many photos (0: any number), in the colours in which this application shows it. The theme is set
/// for all pickers. Main thread, as all of these.
std::shared_ptr<YMSPhotoPickerViewController> makeThemedPicker(unsigned photos);

/// Says over the screen that the photo library is closed to the application, and leads to the system's settings.
void presentAlbumAccessAlert(UIViewController& over);
/// The same of the camera.
void presentCameraAccessAlert(UIViewController& over);

} // namespace lamina
