#include "picker/YMSPhotoPickerViewController.h"

namespace lamina {

YMSPhotoPickerViewController::YMSPhotoPickerViewController() = default;
YMSPhotoPickerViewController::~YMSPhotoPickerViewController() = default;

} // namespace lamina
