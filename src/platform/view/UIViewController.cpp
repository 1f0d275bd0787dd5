#include "platform/view/UIViewController.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Log.h"
#include "platform/base/UIScreen.h"
#include "platform/view/ScreenTransition_p.h"
#include "platform/view/UIBarButtonItem.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIWindow.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace lamina {

namespace {

using Screen = std::shared_ptr<UIViewController>;

bool coversPresenter(UIModalPresentationStyle style)
{
    return style == UIModalPresentationStyle::FullScreen || style == UIModalPresentationStyle::CurrentContext;
}

/// Keeps the screen until the completion has run.
UIViewController::Completion keeping(const Screen& screen, UIViewController::Completion completion)
{
    return [screen, completion = std::move(completion)] {
        if (completion)
            completion();
    };
}

} // namespace

UIViewController::UIViewController() = default;
UIViewController::~UIViewController() = default;

UIView& UIViewController::view()
{
    return *sharedView();
}

std::shared_ptr<UIView> UIViewController::sharedView()
{
    if (!m_view) {
        loadView();
        if (!m_view)
            UIViewController::loadView();
        viewDidLoad();
    }
    return m_view;
}

void UIViewController::loadView()
{
    setView(std::make_shared<UIView>(CGRect({}, UIScreen::main().bounds)));
}

void UIViewController::setTitle(std::string title)
{
    if (title == m_title)
        return;
    m_title = std::move(title);
    emit titleChanged();
}

void UIViewController::setRightBarButtonItem(std::shared_ptr<UIBarButtonItem> item)
{
    m_rightBarButtonItem = std::move(item);
    emit rightBarButtonItemChanged();
}

QObject* UIViewController::rightBarButtonObject() const
{
    return m_rightBarButtonItem.get();
}

QString UIViewController::className() const
{
    const QString name = QString::fromLatin1(metaObject()->className());
    return name.section(QStringLiteral("::"), -1);
}

void UIViewController::viewWillAppear(bool) {}
void UIViewController::viewDidAppear(bool) {}
void UIViewController::viewWillDisappear(bool) {}
void UIViewController::viewDidDisappear(bool) {}

// ---- the window ----

const UIWindow* UIViewController::window() const
{
    const UIViewController* step = this;
    while (step && !step->m_window) {
        const auto container = step->m_parent.lock();
        step = container ? container.get() : step->m_presenting.lock().get();
    }
    return step ? step->m_window : nullptr;
}

CGSize UIViewController::windowSize() const
{
    const UIWindow* const standsIn = window();
    return standsIn ? standsIn->size() : UIScreen::main().bounds;
}

UIInterfaceOrientation UIViewController::interfaceOrientation() const
{
    const CGSize size = windowSize();
    return size.width > size.height ? UIInterfaceOrientation::LandscapeRight : UIInterfaceOrientation::Portrait;
}

UIUserInterfaceIdiom UIViewController::userInterfaceIdiom() const
{
    const CGSize size = windowSize();
    return std::min(size.width, size.height) >= kPadSide ? UIUserInterfaceIdiom::Pad : UIUserInterfaceIdiom::Phone;
}

bool UIViewController::shouldAutorotateToInterfaceOrientation(UIInterfaceOrientation orientation) const
{
    return ((supportedInterfaceOrientations() >> static_cast<unsigned>(orientation)) & 1U) != 0;
}

UIInterfaceOrientationMask::Set UIViewController::supportedInterfaceOrientations() const
{
    return userInterfaceIdiom() == UIUserInterfaceIdiom::Pad ? UIInterfaceOrientationMask::All
                                                             : UIInterfaceOrientationMask::AllButUpsideDown;
}

void UIViewController::layoutInWindow()
{
    if (!m_view || !viewFollowsWindow())
        return;
    const CGSize size = windowSize();
    if (m_view->bounds().size == size && m_laidOut)
        return;
    m_laidOut = true;
    m_view->setFrame({{}, size});
    viewDidLayoutSubviews();
}

// ---- who stands where ----

Screen UIViewController::outermostContainer()
{
    Screen screen = shared_from_this();
    while (auto parent = screen->parentViewController())
        screen = std::move(parent);
    return screen;
}

Screen UIViewController::presentedViewController() const
{
    if (m_presented)
        return m_presented;
    const auto parent = parentViewController();
    return parent ? parent->presentedViewController() : nullptr;
}

Screen UIViewController::presentingViewController() const
{
    if (auto presenting = m_presenting.lock())
        return presenting;
    const auto parent = parentViewController();
    return parent ? parent->presentingViewController() : nullptr;
}

std::shared_ptr<UINavigationController> UIViewController::navigationController() const
{
    for (Screen screen = parentViewController(); screen; screen = screen->parentViewController())
        if (auto stack = std::dynamic_pointer_cast<UINavigationController>(screen))
            return stack;
    return nullptr;
}

/// This presenter and what shows from under it, from the top down.
std::vector<Screen> UIViewController::visibleScreens()
{
    std::vector<Screen> screens;
    for (Screen screen = shared_from_this(); screen; screen = screen->m_presenting.lock()) {
        screens.push_back(screen);
        if (coversPresenter(screen->m_modalPresentationStyle))
            break;
    }
    return screens;
}

// ---- presenting ----

/// Whether this container can present the screen.
Outcome UIViewController::canPresent(const UIViewController* controller) const
{
    if (!controller)
        return Error{"present", "there is no screen to present"};
    if (m_presented)
        return Error{"present", "a screen is presented already"};
    if (controller == this || controller->m_parent.lock() || controller->m_presenting.lock() || controller->m_presented)
        return Error{"present", "the screen to present stands somewhere else"};
    return success();
}

void UIViewController::present(std::shared_ptr<UIViewController> controller, bool animated, Completion completion)
{
    const Screen presenter = outermostContainer();
    if (const Outcome possible = presenter->canPresent(controller.get()); !possible) {
        logWarning(possible.error().subject + ": " + possible.error().cause);
        ScreenTransition::submitCompletion(keeping(shared_from_this(), std::move(completion)));
        return;
    }
    presenter->m_presented = controller;
    controller->m_presenting = presenter;

    ScreenTransition transition;
    transition.shown = {PresentationTransition::Kind::Present, presenter, controller,
                        controller->m_modalPresentationStyle, animated ? ScreenTransition::kDuration : 0};
    if (coversPresenter(controller->m_modalPresentationStyle))
        transition.leaving = presenter->visibleScreens();
    transition.arriving = {controller};
    transition.completion = std::move(completion);
    ScreenTransition::submit(std::move(transition));
}

void UIViewController::dismiss(bool animated, Completion completion)
{
    const Screen screen = shared_from_this();
    Screen presenter;
    for (Screen step = screen; step && !presenter; step = step->parentViewController())
        if (step->m_presented)
            presenter = step;
    if (!presenter)
        presenter = presentingViewController();
    if (!presenter) {
        logWarning("can't dismiss: no screen is presented");
        ScreenTransition::submitCompletion(keeping(screen, std::move(completion)));
        return;
    }
    // The caller may be the one that leaves; the completion is the last that needs it.
    presenter->dismissPresented(animated, keeping(screen, std::move(completion)));
}

/// Takes all that stands above this screen out of the chain; gives it from the top down.
std::vector<Screen> UIViewController::unlinkPresented()
{
    std::vector<Screen> unlinked;
    Screen step = std::move(m_presented);
    m_presented.reset();
    while (step) {
        unlinked.insert(unlinked.begin(), step);
        step->m_presenting.reset();
        step = std::exchange(unlinked.front()->m_presented, nullptr);
    }
    return unlinked;
}

void UIViewController::dismissPresented(bool animated, Completion completion)
{
    const Screen self = shared_from_this();
    const std::vector<Screen> unlinked = unlinkPresented();

    ScreenTransition transition;
    transition.shown = {PresentationTransition::Kind::Dismiss, unlinked.front(), self,
                        unlinked.back()->m_modalPresentationStyle, animated ? ScreenTransition::kDuration : 0};
    transition.leaving = unlinked;
    transition.arriving = visibleScreens();
    transition.completion = std::move(completion);
    ScreenTransition::submit(std::move(transition));
}

// ---- segues ----

void UIViewController::prepareForSegue(UIStoryboardSegue&, QObject*) {}

void UIViewController::performSegue(const std::string& identifier, QObject* sender)
{
    const auto segue = m_storyboard ? m_storyboard->segue(identifier) : std::nullopt;
    if (!segue) {
        logError("no transition is called " + identifier);
        return;
    }
    const Screen destination = m_storyboard->instantiateViewController(segue->destinationIdentifier);
    if (!destination)
        return;
    const auto self = shared_from_this();
    UIStoryboardSegue told{identifier, *this, *destination};
    prepareForSegue(told, sender);
    const auto stack = navigationController();
    if (segue->kind == UIStoryboard::SegueKind::Show && stack)
        stack->pushViewController(destination, true);
    else
        present(destination, true);
}

} // namespace lamina
