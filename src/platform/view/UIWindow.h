#pragma once

#include "platform/view/UIViewController.h"

namespace lamina {

/// Where the first screen stands, and so the owner of all the screens. Main thread.
class UIWindow : public QObject {
    Q_OBJECT

public:
    UIWindow();
    ~UIWindow() override;

    std::shared_ptr<UIViewController> rootViewController() const { return m_root; }
    /// Shows another first screen, on a later turn; what the former one presents goes with it. Null: none.
    void setRootViewController(std::shared_ptr<UIViewController> controller);
    /// The screen that a person deals with: presented last, and the top one where that is a navigation stack. Null:
    /// none.
    std::shared_ptr<UIViewController> topViewController() const;

signals:
    void rootViewControllerChanged();

private:
    std::shared_ptr<UIViewController> m_root;
};

} // namespace lamina
