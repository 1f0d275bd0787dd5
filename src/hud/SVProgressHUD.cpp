#include "hud/SVProgressHUD.h"

namespace lamina {

void SVProgressHUD::setDefaultStyle(int) {}
void SVProgressHUD::setDefaultAnimationType(int) {}
void SVProgressHUD::setDefaultMaskType(int) {}
void SVProgressHUD::showWithStatus(const std::string&) {}
void SVProgressHUD::setProgress(double) {}
void SVProgressHUD::setCancelAction(std::function<void()>) {}
void SVProgressHUD::showFailure(const Error&, std::function<void()>, const std::string&, std::function<void()>) {}
void SVProgressHUD::dismiss() {}

} // namespace lamina
