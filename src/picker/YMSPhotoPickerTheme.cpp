#include "picker/YMSPhotoPickerTheme.h"

namespace lamina {

YMSPhotoPickerTheme& YMSPhotoPickerTheme::sharedInstance()
{
    static auto* const theme = new YMSPhotoPickerTheme;
    return *theme;
}

} // namespace lamina
