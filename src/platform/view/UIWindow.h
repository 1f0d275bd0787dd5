#pragma once

#include "platform/view/UIViewController.h"

#include <memory>

namespace lamina {

/// Where the first screen stands, and so the owner of all the screens. Main thread.
class UIWindow {
public:
    UIWindow();
    ~UIWindow();
    UIWindow(const UIWindow&) = delete;
    UIWindow& operator=(const UIWindow&) = delete;

    std::shared_ptr<UIViewController> rootViewController() const { return m_root; }
    /// Shows another first screen, on a later turn; what the former one presents goes with it. Null: none.
    void setRootViewController(std::shared_ptr<UIViewController> controller);
    /// The screen that the user deals with: presented last, and the top one where that is a navigation stack. Null:
    /// none.
    std::shared_ptr<UIViewController> topViewController() const;

private:
    std::shared_ptr<UIViewController> m_root;
};

} // namespace lamina
