#include "editors/common/PhotosLeftOut.h"

#include "platform/base/Localization.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIViewController.h"

#include <utility>

namespace lamina {

void presentTooManyPhotos(UIViewController& screen, std::string message, std::function<void()> goOn)
{
    screen.present(UIAlertController::make(localizedString("Too many photos"), std::move(message),
                                           {{localizedString("OK"), UIAlertActionStyle::Default, std::move(goOn)}}),
                   true);
}

} // namespace lamina
