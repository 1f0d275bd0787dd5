#include "ControllerBench.h"

#include "platform/view/PresentationHost.h"
#include "platform/view/UIAlertController.h"

namespace lamina {
namespace {

using Style = UIModalPresentationStyle;

class ControllerPresentationTest : public test::ControllerBench {};

TEST_F(ControllerPresentationTest, ViewsAreMadeOnceAndLate)
{
    test::HeardScreen made("A", log);
    EXPECT_FALSE(made.isViewLoaded());
    UIView& view = made.view();
    EXPECT_EQ(&made.view(), &view);
    EXPECT_EQ(log, "A* ");
    EXPECT_GT(view.bounds().size.width, 0);
}

TEST_F(ControllerPresentationTest, EverythingIsToldOnLaterTurns)
{
    const auto a = screen("A");
    rootScreen->present(a, true, note("done"));
    EXPECT_EQ(rootScreen->presentedViewController(), a);
    EXPECT_EQ(a->presentingViewController(), stack);
    EXPECT_EQ(log, "");
    EXPECT_EQ(heard(), "R- A+ A! R. done ");
    EXPECT_EQ(window.topViewController(), a);

    a->dismiss(true, note("gone"));
    EXPECT_EQ(a->presentingViewController(), nullptr);
    EXPECT_EQ(log, "");
    EXPECT_EQ(heard(), "A- R+ R! A. gone ");
    EXPECT_EQ(window.topViewController(), rootScreen);
    EXPECT_EQ(messages, 0);
}

TEST_F(ControllerPresentationTest, StyleDecidesWhetherThePresenterGoes)
{
    for (const Style style : {Style::FullScreen, Style::CurrentContext}) {
        const auto a = screen("A", style);
        rootScreen->present(a, false);
        EXPECT_EQ(heard(), "R- A+ A! R. ");
        a->dismiss(false);
        EXPECT_EQ(heard(), "A- R+ R! A. ");
    }
    for (const Style style : {Style::OverFullScreen, Style::OverCurrentContext}) {
        const auto a = screen("A", style);
        rootScreen->present(a, false);
        EXPECT_EQ(heard(), "A+ A! ");
        // What covers the sheet covers the screen that shows from under it.
        const auto b = screen("B");
        a->present(b, false);
        EXPECT_EQ(heard(), "A- R- B+ B! A. R. ");
        b->dismiss(false);
        EXPECT_EQ(heard(), "B- A+ R+ A! R! B. ");
        a->dismiss(false);
        EXPECT_EQ(heard(), "A- A. ");
    }
}

TEST_F(ControllerPresentationTest, DismissGoesByWhereItIsCalled)
{
    const auto a = screen("A");
    const auto b = screen("B");
    const auto c = screen("C");
    const auto presentAll = [&] {
        rootScreen->present(a, true);
        a->present(b, true);
        b->present(c, true);
        turns();
        log.clear();
    };
    presentAll();
    b->dismiss(true); // has something above it: that goes
    EXPECT_EQ(heard(), "C- B+ B! C. ");
    EXPECT_EQ(a->presentedViewController(), b);
    b->dismiss(true); // nothing above: it goes itself
    EXPECT_EQ(heard(), "B- A+ A! B. ");
    a->dismiss(true);
    turns();

    presentAll();
    rootScreen->dismiss(true, note("all")); // a screen in a stack: what its stack presents, in one step
    EXPECT_EQ(heard(), "C- R+ R! C. all ");
    for (const auto& screen : {a, b, c}) {
        EXPECT_EQ(screen->presentingViewController(), nullptr);
        EXPECT_EQ(screen->presentedViewController(), nullptr);
    }

    const auto inner = UINavigationController::make(a); // a screen in a presented stack: the stack
    rootScreen->present(inner, true);
    EXPECT_EQ(heard(), "R- A+ A! R. ");
    EXPECT_EQ(a->presentingViewController(), stack);
    a->dismiss(true);
    EXPECT_EQ(heard(), "A- R+ R! A. ");
    EXPECT_EQ(stack->presentedViewController(), nullptr);
}

TEST_F(ControllerPresentationTest, WhatCannotBeDoneIsLoggedAndCompleted)
{
    const auto a = screen("A");
    const auto b = screen("B");
    rootScreen->dismiss(true, note("nothing"));
    rootScreen->present(nullptr, true, note("null"));
    rootScreen->present(rootScreen, true, note("itself"));
    EXPECT_EQ(heard(), "nothing null itself ");
    EXPECT_EQ(messages, 3);
    rootScreen->present(a, true, note("first"));
    rootScreen->present(b, true, note("second"));
    EXPECT_EQ(rootScreen->presentedViewController(), a);
    a->present(a, true, note("again"));
    EXPECT_EQ(heard(), "R- A+ A! R. first second again ");
    EXPECT_EQ(messages, 5);
    a->dismiss(true, note("once"));
    a->dismiss(true, note("twice"));
    EXPECT_EQ(heard(), "A- R+ R! A. once twice ");
}

TEST_F(ControllerPresentationTest, ScreensLiveUntilTheirCompletion)
{
    std::weak_ptr<UIViewController> life;
    {
        const auto a = screen("A");
        life = a;
        rootScreen->present(a, true);
        turns();
        a->dismiss(true, [this, life] { log += life.expired() ? "dead " : "alive "; });
    }
    EXPECT_FALSE(life.expired());
    EXPECT_TRUE(heard().ends_with("alive "));
    EXPECT_TRUE(life.expired());

    auto alone = std::make_shared<test::HeardScreen>("S", log); // the presenter is held by nobody else
    std::weak_ptr<UIViewController> presenter = alone;
    alone->present(screen("A"), true, [this, presenter] { log += presenter.expired() ? "dead " : "alive "; });
    alone.reset();
    EXPECT_TRUE(heard().ends_with("alive "));
    EXPECT_TRUE(presenter.expired());
}

TEST_F(ControllerPresentationTest, CompletionsMayGoOn)
{
    const auto a = screen("A");
    const auto b = screen("B");
    rootScreen->present(a, true);
    turns();
    log.clear();
    a->dismiss(true, [&] { rootScreen->present(b, true, note("next")); });
    EXPECT_EQ(heard(), "A- R+ R! A. R- B+ B! R. next ");
    b->dismiss(true, [&] {
        rootScreen->present(a, true, note("inside"));
        turns(); // a completion that waits for the next transition
        log += "outside ";
    });
    EXPECT_TRUE(heard().ends_with("inside outside "));
}

/// Keeps transitions until it is told that they are over.
class SlowHost : public PresentationHost {
public:
    void startTransition(const PresentationTransition& transition, std::function<void()> finished) override
    {
        transitions.push_back(transition);
        m_finished = std::move(finished);
    }
    void finish() { std::exchange(m_finished, {})(); }

    std::vector<PresentationTransition> transitions;

private:
    std::function<void()> m_finished;
};

TEST_F(ControllerPresentationTest, HostsTakeTheirTimeOneTransitionAtATime)
{
    using Kind = PresentationTransition::Kind;
    const auto host = std::make_shared<SlowHost>();
    PresentationHost::setCurrent(host);
    const auto a = screen("A", Style::OverCurrentContext);
    rootScreen->present(a, true, note("shown"));
    a->dismiss(false, note("gone"));
    EXPECT_EQ(heard(), "A+ ");
    ASSERT_EQ(host->transitions.size(), 1u);
    EXPECT_EQ(host->transitions[0].kind, Kind::Present);
    EXPECT_EQ(host->transitions[0].from, stack);
    EXPECT_EQ(host->transitions[0].to, a);
    EXPECT_EQ(host->transitions[0].style, Style::OverCurrentContext);
    EXPECT_GT(host->transitions[0].duration, 0);
    host->finish();
    EXPECT_EQ(heard(), "A! shown A- ");
    ASSERT_EQ(host->transitions.size(), 2u);
    EXPECT_EQ(host->transitions[1].kind, Kind::Dismiss);
    EXPECT_EQ(host->transitions[1].duration, 0);
    PresentationHost::setCurrent(nullptr); // the window closes in the middle of it
    EXPECT_EQ(heard(), "A. gone ");
    host->finish(); // too late
    EXPECT_EQ(heard(), "");
}

TEST_F(ControllerPresentationTest, AlertsCloseBeforeTheirChoiceRuns)
{
    const auto alert = UIAlertController::make(
        "Title", "Message",
        {{"YES", UIAlertActionStyle::Default, note("yes")}, {"NO", UIAlertActionStyle::Cancel, {}}});
    EXPECT_EQ(alert->title(), "Title");
    EXPECT_EQ(alert->message(), "Message");
    EXPECT_EQ(alert->cancelIndex(), 1);
    rootScreen->present(alert, true, note("shown"));
    EXPECT_EQ(heard(), "shown "); // the presenter stays where it is
    alert->tap(2);
    alert->tap(-1);
    EXPECT_EQ(rootScreen->presentedViewController(), alert);
    alert->tap(0);
    alert->tap(1);
    EXPECT_EQ(log, "");
    EXPECT_EQ(rootScreen->presentedViewController(), nullptr);
    EXPECT_EQ(heard(), "yes ");
    EXPECT_EQ(messages, 3);

    const auto empty = UIAlertController::make("T", "M", {{"OK", UIAlertActionStyle::Default, {}}});
    EXPECT_EQ(empty->cancelIndex(), 0);
    rootScreen->present(empty, true);
    empty->tap(0);
    EXPECT_EQ(heard(), "");
    EXPECT_EQ(rootScreen->presentedViewController(), nullptr);
}

TEST_F(ControllerPresentationTest, SignalsTellTheWindow)
{
    int presented = 0;
    QObject::connect(stack.get(), &UIViewController::presentedViewControllerChanged, [&] { ++presented; });
    const auto a = screen("A");
    rootScreen->present(a, true);
    EXPECT_EQ(presented, 1);
    a->dismiss(true);
    EXPECT_EQ(presented, 2);

    const auto other = screen("N");
    rootScreen->present(a, true);
    turns();
    log.clear();
    window.setRootViewController(other);
    EXPECT_EQ(heard(), "A- N+ N! A. ");
    EXPECT_EQ(a->presentingViewController(), nullptr);
}

} // namespace
} // namespace lamina
