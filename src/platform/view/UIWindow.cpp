#include "platform/view/UIWindow.h"

#include "platform/view/ScreenTransition_p.h"
#include "platform/view/UINavigationController.h"

#include <utility>

namespace lamina {

UIWindow::UIWindow() = default;
UIWindow::~UIWindow() = default;

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
    }
    if (controller)
        transition.arriving.push_back(controller);
    m_root = std::move(controller);
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

} // namespace lamina
