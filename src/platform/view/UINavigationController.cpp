#include "platform/view/UINavigationController.h"

#include "platform/base/Log.h"
#include "platform/view/ScreenTransition_p.h"

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

using Screen = std::shared_ptr<UIViewController>;

bool contains(const std::vector<Screen>& screens, const Screen& screen)
{
    return std::find(screens.begin(), screens.end(), screen) != screens.end();
}

} // namespace

UINavigationController::UINavigationController() = default;

std::shared_ptr<UINavigationController> UINavigationController::make(std::shared_ptr<UIViewController> root)
{
    auto stack = std::make_shared<UINavigationController>();
    stack->setViewControllers({std::move(root)}, false);
    return stack;
}

std::shared_ptr<UIViewController> UINavigationController::topViewController() const
{
    return m_viewControllers.empty() ? nullptr : m_viewControllers.back();
}

void UINavigationController::setViewControllers(std::vector<std::shared_ptr<UIViewController>> controllers,
                                                bool animated, Completion completion)
{
    std::vector<Screen> usable;
    for (const Screen& screen : controllers) {
        const bool free = screen && screen.get() != this && !screen->m_presenting.lock() && !contains(usable, screen) &&
                          (!screen->m_parent.lock() || contains(m_viewControllers, screen));
        if (free)
            usable.push_back(screen);
        else
            logWarning("a screen that stands somewhere else is left out of the stack");
    }
    replaceStack(std::move(usable), Direction::Forward, animated, std::move(completion));
}

void UINavigationController::pushViewController(std::shared_ptr<UIViewController> controller, bool animated,
                                                Completion completion)
{
    std::vector<Screen> controllers = m_viewControllers;
    if (controller && controller.get() != this && !controller->m_parent.lock() && !controller->m_presenting.lock())
        controllers.push_back(std::move(controller));
    else
        logWarning("can't push: there is no screen, or it stands somewhere else");
    replaceStack(std::move(controllers), Direction::Forward, animated, std::move(completion));
}

std::shared_ptr<UIViewController> UINavigationController::popViewController(bool animated, Completion completion)
{
    std::vector<Screen> controllers = m_viewControllers;
    Screen popped;
    if (controllers.size() > 1) {
        popped = controllers.back();
        controllers.pop_back();
    } else {
        logWarning("can't pop: the stack has no other screen");
    }
    replaceStack(std::move(controllers), Direction::Back, animated, std::move(completion));
    return popped;
}

std::vector<std::shared_ptr<UIViewController>> UINavigationController::popToRootViewController(bool animated,
                                                                                               Completion completion)
{
    const auto rest = m_viewControllers.begin() + (m_viewControllers.empty() ? 0 : 1);
    std::vector<Screen> popped(rest, m_viewControllers.end());
    replaceStack({m_viewControllers.begin(), rest}, Direction::Back, animated, std::move(completion));
    return popped;
}

void UINavigationController::replaceStack(std::vector<std::shared_ptr<UIViewController>> controllers,
                                          Direction direction, bool animated, Completion completion)
{
    const auto self = std::static_pointer_cast<UINavigationController>(shared_from_this());
    const std::vector<Screen> former = std::exchange(m_viewControllers, std::move(controllers));
    for (const Screen& screen : former)
        screen->m_parent.reset();
    for (const Screen& screen : m_viewControllers)
        screen->m_parent = self;

    ScreenTransition transition;
    const Screen from = former.empty() ? nullptr : former.back();
    const Screen to = topViewController();
    if (from != to) {
        using Kind = PresentationTransition::Kind;
        transition.shown = {direction == Direction::Forward ? Kind::Push : Kind::Pop, from, to,
                            UIModalPresentationStyle::FullScreen, animated ? ScreenTransition::kDuration : 0};
        transition.stack = self;
        if (to)
            transition.arriving.push_back(to);
        transition.arrivingSettleFirst = false;
    }
    // The screens that leave, and this stack, are kept until the completion has run.
    transition.completion = [self, former, completion = std::move(completion)] {
        if (completion)
            completion();
    };
    ScreenTransition::submit(std::move(transition));
}

void UINavigationController::viewWillAppear(bool animated)
{
    if (m_shown)
        ScreenTransition::beginAppearing(*m_shown, animated);
}

void UINavigationController::viewDidAppear(bool animated)
{
    if (m_shown)
        ScreenTransition::endAppearing(*m_shown, animated);
}

void UINavigationController::viewWillDisappear(bool animated)
{
    if (m_shown)
        ScreenTransition::beginDisappearing(*m_shown, animated);
}

void UINavigationController::viewDidDisappear(bool animated)
{
    if (m_shown)
        ScreenTransition::endDisappearing(*m_shown, animated);
}

} // namespace lamina
