#include "picker/ThemedPicker.h"

#include "picker/YMSPhotoPickerTheme.h"
#include "platform/application/UIApplication.h"
#include "platform/base/Localization.h"
#include "platform/base/UIColor.h"
#include "platform/view/UIAlertController.h"

#include <string>
#include <utility>

namespace lamina {

namespace {

constexpr UIColor kTeal{40 / 255.0, 196 / 255.0, 182 / 255.0, 1};

void applyTheme(YMSPhotoPickerTheme& theme)
{
    theme.titleLabelTextColor = UIColor::black();
    theme.navigationBarBackgroundColor = kTeal;
    theme.tintColor = UIColor::black();
    theme.orderTintColor = kTeal;
    theme.orderLabelTextColor = UIColor::black();
    theme.cameraVeilColor = kTeal;
    theme.cameraIconColor = UIColor::white();
    theme.statusBarStyle = 0;
}

void presentPermissionAlert(UIViewController& over, std::string title, std::string message)
{
    const auto openSettings = [] { UIApplication::shared().openURL(UIApplicationOpenSettingsURLString); };
    over.present(UIAlertController::make(std::move(title), std::move(message),
                                         {{localizedString("Cancel"), UIAlertActionStyle::Cancel, {}},
                                          {localizedString("Settings"), UIAlertActionStyle::Default, openSettings}}),
                 true);
}

} // namespace

std::shared_ptr<YMSPhotoPickerViewController> makeThemedPicker(unsigned photos)
{
    auto picker = std::make_shared<YMSPhotoPickerViewController>();
    picker->numberOfPhotoToSelect = photos;
    applyTheme(picker->theme());
    return picker;
}

void presentAlbumAccessAlert(UIViewController& over)
{
    presentPermissionAlert(over, localizedString("Allow photo album access?"),
                           localizedString("Need your permission to access photo albumbs"));
}

void presentCameraAccessAlert(UIViewController& over)
{
    presentPermissionAlert(over, localizedString("Allow camera access?"),
                           localizedString("Need your permission to take a photo"));
}

} // namespace lamina
