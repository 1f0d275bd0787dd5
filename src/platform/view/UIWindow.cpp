#include "platform/view/UIWindow.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/view/ScreenTransition_p.h"
#include "platform/view/UINavigationController.h"

#include <cmath>
#include <utility>

namespace lamina {

UIWindow::UIWindow() = default;

UIWindow::~UIWindow()
{
    if (m_root)
        m_root->m_window = nullptr;
}

void UIWindow::setRootViewController(std::shared_ptr<UIViewController> controller)
{
    if (controller == m_root)
        return;
    ScreenTransition transition;
    transition.shown.kind = PresentationTransition::Kind::Root;
    transition.shown.from = topViewController();
    transition.shown.to = controller;
    if (m_root) {
        transition.leaving = m_root->unlinkPresented();
        transition.leaving.push_back(m_root);
        m_root->m_window = nullptr;
    }
    if (controller)
        transition.arriving.push_back(controller);
    m_root = std::move(controller);
    if (m_root)
        m_root->m_window = this;
    ScreenTransition::submit(std::move(transition));
}

std::shared_ptr<UIViewController> UIWindow::topViewController() const
{
    auto screen = m_root;
    while (screen) {
        const auto* stack = dynamic_cast<const UINavigationController*>(screen.get());
        auto next = screen->m_presented;
        if (!next && stack)
            next = stack->topViewController();
        if (!next)
            break;
        screen = std::move(next);
    }
    return screen;
}

/// All that the window holds, from the bottom to the top.
std::vector<std::shared_ptr<UIViewController>> UIWindow::screens() const
{
    std::vector<std::shared_ptr<UIViewController>> screens;
    for (auto screen = m_root; screen; screen = screen->m_presented) {
        screens.push_back(screen);
        if (const auto* stack = dynamic_cast<const UINavigationController*>(screen.get()))
            screens.insert(screens.end(), stack->viewControllers().begin(), stack->viewControllers().end());
    }
    return screens;
}

CGSize UIWindow::size() const
{
    return m_size.value_or(UIScreen::main().bounds);
}

void UIWindow::setSize(CGSize size)
{
    if (!std::isfinite(size.width) || !std::isfinite(size.height) || size.width <= 0 || size.height <= 0)
        return;
    if (!m_root) {
        m_size = size;
        return;
    }
    if (m_comingSize) {
        *m_comingSize = size;
        return;
    }
    if (size == this->size())
        return;
    m_comingSize = std::make_shared<CGSize>(size);
    DispatchQueue::main().async([this, coming = std::weak_ptr(m_comingSize)] {
        if (coming.lock()) // else the window is gone
            takeSize(*std::exchange(m_comingSize, nullptr));
    });
}

void UIWindow::takeSize(CGSize size)
{
    if (size == this->size())
        return;
    const auto told = screens(); // they may change who stands where
    for (const auto& screen : told)
        if (screen->isViewLoaded())
            screen->viewWillTransitionToSize(size);
    m_size = size;
    for (const auto& screen : told)
        screen->layoutInWindow();
}

} // namespace lamina
