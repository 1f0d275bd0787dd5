#include "ControllerBench.h"

#include "platform/view/PresentationHost.h"
#include "platform/view/UIStoryboard.h"

#include <cstddef>
#include <map>
#include <ostream>
#include <sstream>
#include <vector>

namespace lamina::test {
namespace {

using Style = UIModalPresentationStyle;

/// Steps, all of one turn up to a "|": "R:A" R presents A, "x:A" A is asked to dismiss, "push:A" and "pop" on the
/// stack, "root:A" another first screen. Each logs itself when it is complete. A, B and C cover what presents them, S
/// lies over it, "N" is a stack that holds M, "0" is no screen.
struct Script {
    const char* name;
    const char* steps;
    const char* heard;
    const char* top;
    int messages = 0;
    friend void PrintTo(const Script& script, std::ostream* out) { *out << script.name; }
};

const Script kScripts[] = {
    {"Present", "R:A", "R- A+ A! R. R:A ", "A"},
    {"Dismiss", "R:A | x:A", "R- A+ A! R. R:A | A- R+ R! A. x:A ", "R"},
    {"InOneTurn", "R:A x:A", "R- A+ A! R. R:A A- R+ R! A. x:A ", "R"},
    {"OverThePresenter", "R:S | S:B | x:B | x:S",
     "S+ S! R:S | S- R- B+ B! S. R. S:B | B- S+ R+ S! R! B. x:B | S- S. x:S ", "R"},
    {"DismissWhatLiesAbove", "R:A A:B B:C | x:B | x:B",
     "R- A+ A! R. R:A A- B+ B! A. A:B B- C+ C! B. B:C | C- B+ B! C. x:B | B- A+ A! B. x:B ", "A"},
    {"DismissAllInOneStep", "R:A A:S S:C | x:R", "R- A+ A! R. R:A S+ S! A:S S- A- C+ C! S. A. S:C | C- R+ R! C. x:R ",
     "R"},
    {"DismissAStackFromInside", "R:N | x:M", "R- M+ M! R. R:N | M- R+ R! M. x:M ", "R"},
    {"NothingToDismiss", "x:R", "x:R ", "R", 1},
    {"DismissTwice", "R:A | x:A x:A", "R- A+ A! R. R:A | A- R+ R! A. x:A x:A ", "R", 1},
    {"NoScreen", "R:0 push:0", "R:0 push:0 ", "R", 2},
    {"Itself", "R:R push:R", "R:R push:R ", "R", 2},
    {"OnePresentedAtATime", "R:A R:B A:A", "R- A+ A! R. R:A R:B A:A ", "A", 2},
    {"PushAndPop", "push:A | pop", "R- A+ R. A! push:A | A- R+ A. R! pop ", "R"},
    {"TheLastScreenStays", "pop", "pop ", "R", 1},
    {"PushTwice", "push:A push:A", "R- A+ R. A! push:A push:A ", "A", 1},
    {"AStackOutOfSightIsQuiet", "R:C | push:A | x:C", "R- C+ C! R. R:C | push:A | C- A+ A! C. x:C ", "A"},
    {"AnotherFirstScreen", "R:A | root:B", "R- A+ A! R. R:A | A- B+ B! A. ", "B"},
};

class ControllerScripts : public ControllerBench, public testing::WithParamInterface<Script> {
protected:
    void playStep(const std::string& step)
    {
        if (step == "|") {
            turns();
            log += "| ";
            return;
        }
        const std::size_t colon = step.find(':');
        const std::string verb = step.substr(0, colon);
        const auto object = colon == std::string::npos ? nullptr : screens.at(step.substr(colon + 1));
        if (verb == "pop")
            stack->popViewController(true, note(step));
        else if (verb == "push")
            stack->pushViewController(object, true, note(step));
        else if (verb == "root")
            window.setRootViewController(object);
        else if (verb == "x")
            object->dismiss(true, note(step));
        else
            screens.at(verb)->present(object, true, note(step));
    }

    const std::shared_ptr<UIViewController> inStack = screen("M");
    const std::map<std::string, std::shared_ptr<UIViewController>> screens{
        {"R", rootScreen},  {"A", screen("A")},
        {"M", inStack},     {"B", screen("B")},
        {"C", screen("C")}, {"S", screen("S", Style::OverCurrentContext)},
        {"0", nullptr},     {"N", UINavigationController::make(inStack)}};
};

TEST_P(ControllerScripts, AreHeard)
{
    heard();
    std::istringstream steps(GetParam().steps);
    for (std::string step; steps >> step;)
        playStep(step);
    EXPECT_EQ(heard(), GetParam().heard);
    EXPECT_EQ(window.topViewController()->title(), GetParam().top);
    EXPECT_EQ(messages, GetParam().messages);
}

INSTANTIATE_TEST_SUITE_P(, ControllerScripts, testing::ValuesIn(kScripts),
                         [](const auto& script) { return std::string(script.param.name); });

class ControllerTest : public ControllerBench {
protected:
    /// Notes at a completion whether the screen is alive.
    UIViewController::Completion noteLife(std::weak_ptr<UIViewController> screen)
    {
        return [this, screen] { log += screen.expired() ? "dead " : "alive "; };
    }
};

TEST_F(ControllerTest, WhoStandsWhereChangesAtOnceAndIsToldLater)
{
    const auto a = screen("A");
    const auto b = screen("B");
    stack->pushViewController(a, true);
    EXPECT_EQ(a->navigationController(), stack);
    a->present(b, true);
    EXPECT_EQ(rootScreen->presentedViewController(), b);
    EXPECT_EQ(b->presentingViewController(), stack);
    b->dismiss(true);
    EXPECT_EQ(b->presentingViewController(), nullptr);
    EXPECT_EQ(a->presentedViewController(), nullptr);
    EXPECT_EQ(stack->popViewController(true), a);
    EXPECT_EQ(a->navigationController(), nullptr);
    EXPECT_EQ(log, "");
}

TEST_F(ControllerTest, ScreensLiveUntilTheirCompletion)
{
    std::weak_ptr<UIViewController> presented;
    std::weak_ptr<UIViewController> pushed;
    {
        const auto a = screen("A");
        const auto b = screen("B");
        presented = a;
        pushed = b;
        stack->pushViewController(b, true);
        rootScreen->present(a, true);
        turns();
        a->dismiss(true, noteLife(a));
        stack->popViewController(true, noteLife(b));
        log.clear();
    }
    EXPECT_EQ(heard(), "A- B+ B! A. alive B- R+ B. R! alive ");
    EXPECT_TRUE(presented.expired() && pushed.expired());

    auto alone = std::make_shared<HeardScreen>("S", log); // the presenter is held by nobody else
    std::weak_ptr<UIViewController> presenter = alone;
    alone->present(screen("A"), true, noteLife(alone));
    alone.reset();
    EXPECT_TRUE(heard().ends_with("alive "));
    EXPECT_TRUE(presenter.expired());
}

TEST_F(ControllerTest, CompletionsMayGoOn)
{
    const auto a = screen("A");
    const auto b = screen("B");
    rootScreen->present(a, true);
    heard();
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

TEST_F(ControllerTest, HostsTakeTheirTimeOneTransitionAtATime)
{
    using Kind = PresentationTransition::Kind;
    const auto host = std::make_shared<SlowHost>();
    PresentationHost::setCurrent(host);
    const auto s = screen("S", Style::OverCurrentContext);
    rootScreen->present(s, true, note("shown"));
    s->dismiss(false, note("gone"));
    EXPECT_EQ(heard(), "S+ ");
    host->finish();
    EXPECT_EQ(heard(), "S! shown S- ");
    ASSERT_EQ(host->transitions.size(), 2u);
    const PresentationTransition& shown = host->transitions[0];
    EXPECT_TRUE(shown.kind == Kind::Present && shown.from == stack && shown.to == s);
    EXPECT_TRUE(shown.style == Style::OverCurrentContext && shown.duration > 0);
    EXPECT_TRUE(host->transitions[1].kind == Kind::Dismiss && host->transitions[1].duration == 0);
    PresentationHost::setCurrent(nullptr); // the window closes in the middle of it
    EXPECT_EQ(heard(), "S. gone ");
    host->finish(); // too late
    EXPECT_EQ(heard(), "");
}

TEST_F(ControllerTest, AlertsCloseBeforeTheirChoiceRuns)
{
    const auto question = UIAlertController::make(
        "Title", "Message",
        {{"YES", UIAlertActionStyle::Destructive, note("yes")}, {"Zurück", UIAlertActionStyle::Cancel, {}}});
    EXPECT_EQ(question->cancelIndex(), 1);
    EXPECT_EQ(question->property("preferredStyle").toInt(), 1);
    const QVariantMap second = question->property("actionList").toList().at(1).toMap();
    EXPECT_EQ(second["title"].toString(), QString::fromUtf8("Zurück"));
    EXPECT_EQ(second["style"].toInt(), 1);
    rootScreen->present(question, true, note("shown"));
    EXPECT_EQ(heard(), "shown "); // the presenter stays where it is
    for (const int button : {2, -1, 0, 1})
        question->tap(button);
    EXPECT_EQ(log, "");
    EXPECT_EQ(rootScreen->presentedViewController(), nullptr);
    EXPECT_EQ(heard(), "yes ");
    EXPECT_EQ(messages, 3);
    EXPECT_EQ(UIAlertController::make("T", "M", {{"OK", UIAlertActionStyle::Default, {}}})->cancelIndex(), 0);
}

/// Hands itself over to the next screen.
class Source : public UIViewController {
public:
    void prepareForSegue(UIStoryboardSegue& segue, QObject* sender) override
    {
        EXPECT_EQ(segue.destination<UINavigationController>(), nullptr);
        segue.destinationViewController.setTitle(segue.identifier + " from " + sender->metaObject()->className());
    }
};

TEST_F(ControllerTest, SeguesMakePrepareAndShow)
{
    const auto storyboard = UIStoryboard::named("ControllerTest");
    storyboard->addScene("source", {[] { return std::make_shared<Source>(); }, "SourceScreen.qml"});
    storyboard->addScene("plain", {[] { return std::make_shared<UIViewController>(); }, ""});
    storyboard->addScene("broken", {[] { return std::shared_ptr<UIViewController>(); }, ""});
    storyboard->addSegue("next", "plain", UIStoryboard::SegueKind::Show);
    storyboard->addSegue("over", "plain", UIStoryboard::SegueKind::Present);
    storyboard->addSegue("nowhere", "missing", UIStoryboard::SegueKind::Show);

    const auto source = UIStoryboard::named("ControllerTest")->instantiate<Source>("source");
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(source->scene()->qmlFile, "SourceScreen.qml");
    stack->pushViewController(source, false);
    source->performSegue("over", rootScreen.get());
    ASSERT_NE(source->presentedViewController(), nullptr);
    EXPECT_EQ(source->presentedViewController()->title(), "over from lamina::UIViewController");
    source->performSegue("next", rootScreen.get());
    EXPECT_EQ(stack->topViewController()->title(), "next from lamina::UIViewController");
    EXPECT_EQ(stack->topViewController()->storyboard(), storyboard);
    const auto alone = storyboard->instantiate<Source>("source");
    alone->performSegue("next", rootScreen.get()); // no stack to push on
    EXPECT_NE(alone->presentedViewController(), nullptr);
    EXPECT_EQ(messages, 0);
    source->performSegue("unknown");
    source->performSegue("nowhere");
    rootScreen->performSegue("next"); // made by no storyboard
    EXPECT_EQ(storyboard->instantiateViewController("broken"), nullptr);
    EXPECT_EQ(messages, 4);
}

} // namespace
} // namespace lamina::test
