#pragma once

#include "platform/view/UIViewController.h"

#include <vector>

namespace lamina {

/// How the bar over a stack's screens is drawn. The values are the platform's.
enum class UIBarStyle { Default = 0, Black = 1 };

/// A stack of screens of which the topmost is seen. It has no picture of its own: the window shows the top screen.
///
/// The appearance calls of the stack itself are passed on to the top screen.
class UINavigationController : public UIViewController {
    Q_OBJECT

public:
    /// An empty stack.
    UINavigationController();
    /// A stack with `root` at its bottom.
    static std::shared_ptr<UINavigationController> make(std::shared_ptr<UIViewController> root);

    /// Default Default.
    UIBarStyle barStyle() const { return m_barStyle; }
    void setBarStyle(UIBarStyle style) { m_barStyle = style; }

    /// From the bottom to the top.
    const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return m_viewControllers; }
    /// Replaces the whole stack. Null screens and repeated ones are left out.
    void setViewControllers(std::vector<std::shared_ptr<UIViewController>> controllers, bool animated,
                            Completion completion = {});
    /// Null when the stack is empty.
    std::shared_ptr<UIViewController> topViewController() const;

    /// A screen that is null or stands in a stack already is logged and not pushed.
    void pushViewController(std::shared_ptr<UIViewController> controller, bool animated, Completion completion = {});
    /// Gives the screen that left; null when only the bottom one was there.
    std::shared_ptr<UIViewController> popViewController(bool animated, Completion completion = {});
    /// Takes all screens but the first away in one step, and returns them, the lowest first; none where the first is
    /// the top one.
    std::vector<std::shared_ptr<UIViewController>> popToRootViewController(bool animated, Completion completion = {});

    void viewWillAppear(bool animated) override;
    void viewDidAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;
    void viewDidDisappear(bool animated) override;

private:
    friend class ScreenTransition;
    enum class Direction { Forward, Back };
    void replaceStack(std::vector<std::shared_ptr<UIViewController>> controllers, Direction direction, bool animated,
                      Completion completion);

    UIBarStyle m_barStyle = UIBarStyle::Default;
    std::vector<std::shared_ptr<UIViewController>> m_viewControllers;
    /// The screen that hears of this stack's appearance: the top one of the last transition that has begun.
    std::shared_ptr<UIViewController> m_shown;
};

} // namespace lamina
