#include "hud/BusyPanel.h"

#include "hud/SVProgressHUD.h"
#include "platform/base/Localization.h"

#include <QCoreApplication>

#include <utility>

namespace lamina {

void showBusyPanel(std::function<void()> cancel)
{
    SVProgressHUD::setDefaultStyle(0);
    SVProgressHUD::setDefaultAnimationType(0);
    SVProgressHUD::setDefaultMaskType(4);
    SVProgressHUD::showWithStatus(localizedString(QT_TRANSLATE_NOOP("Lamina", "Please Wait...")));
    SVProgressHUD::setCancelAction(std::move(cancel));
}

} // namespace lamina
