#pragma once

#include "platform/view/UINavigationController.h"

#include <memory>

namespace lamina {

/// The stack that a colour picker is presented in: it may stand as its top screen may. An empty one goes by the
/// defaults. Main thread.
class InfColorPickerNavigationController : public UINavigationController {
    Q_OBJECT

public:
    /// A stack with `root` at its bottom.
    static std::shared_ptr<InfColorPickerNavigationController> make(std::shared_ptr<UIViewController> root);

    bool shouldAutorotate() const override;
    bool shouldAutorotateToInterfaceOrientation(UIInterfaceOrientation orientation) const override;
    UIInterfaceOrientationMask::Set supportedInterfaceOrientations() const override;
};

} // namespace lamina
