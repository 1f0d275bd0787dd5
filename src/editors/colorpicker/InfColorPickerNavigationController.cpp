#include "editors/colorpicker/InfColorPickerNavigationController.h"

#include "platform/view/UIViewController.h"

#include <utility>

namespace lamina {

std::shared_ptr<InfColorPickerNavigationController>
InfColorPickerNavigationController::make(std::shared_ptr<UIViewController> root)
{
    auto stack = std::make_shared<InfColorPickerNavigationController>();
    stack->setViewControllers({std::move(root)}, false);
    return stack;
}

bool InfColorPickerNavigationController::shouldAutorotate() const
{
    const auto top = topViewController();
    return top ? top->shouldAutorotate() : UINavigationController::shouldAutorotate();
}

bool InfColorPickerNavigationController::shouldAutorotateToInterfaceOrientation(
    UIInterfaceOrientation orientation) const
{
    const auto top = topViewController();
    return top ? top->shouldAutorotateToInterfaceOrientation(orientation)
               : UINavigationController::shouldAutorotateToInterfaceOrientation(orientation);
}

UIInterfaceOrientationMask::Set InfColorPickerNavigationController::supportedInterfaceOrientations() const
{
    const auto top = topViewController();
    return top ? top->supportedInterfaceOrientations() : UINavigationController::supportedInterfaceOrientations();
}

} // namespace lamina
