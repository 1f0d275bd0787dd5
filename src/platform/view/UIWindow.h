#pragma once

#include "platform/view/UIViewController.h"

#include "platform/base/CGGeometry.h"

#include <memory>
#include <optional>
#include <vector>

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

    /// Points; that of the main screen until one is set.
    CGSize size() const;
    /// For whoever knows the real window. In force at once while there are no screens; otherwise the screens are told
    /// and laid out on a later turn, and of sizes set before that turn only the last counts. One that is not finite and
    /// positive is ignored.
    void setSize(CGSize size);

private:
    std::vector<std::shared_ptr<UIViewController>> screens() const;
    void takeSize(CGSize size);

    std::shared_ptr<UIViewController> m_root;
    std::optional<CGSize> m_size;
    std::shared_ptr<CGSize> m_comingSize; ///< null: none waits for its turn
};

} // namespace lamina
