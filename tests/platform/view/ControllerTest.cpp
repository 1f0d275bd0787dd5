#include "ControllerBench.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/PresentationHost.h"
#include "platform/view/UIStoryboard.h"

#include <cstddef>
#include <map>
#include <ostream>
#include <sstream>
#include <string>

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
    std::size_t messages = 0;
    friend void PrintTo(const Script& script, std::ostream* out) { *out << script.name; }
};

const Script kScripts[] = {
    {"Dismiss", "R:A | x:A", "R- A+ A! R. R:A | A- R+ R! A. x:A ", "R"},
    {"InOneTurn", "R:A x:A", "R- A+ A! R. R:A A- R+ R! A. x:A ", "R"},
    {"OverThePresenter", "R:S | S:B | x:B | x:S",
     "S+ S! R:S | S- R- B+ B! S. R. S:B | B- S+ R+ S! R! B. x:B | S- S. x:S ", "R"},
    {"DismissWhatLiesAbove", "R:A A:B B:C | x:B | x:B",
     "R- A+ A! R. R:A A- B+ B! A. A:B B- C+ C! B. B:C | C- B+ B! C. x:B | B- A+ A! B. x:B ", "A"},
    {"DismissAllInOneStep", "R:A A:S S:C | x:R", "R- A+ A! R. R:A S+ S! A:S S- A- C+ C! S. A. S:C | C- R+ R! C. x:R ",
     "R"},
    {"DismissAStackFromInside", "R:N | x:M", "R- M+ M! R. R:N | M- R+ R! M. x:M ", "R"},
    {"DismissTwice", "R:A | x:A x:A", "R- A+ A! R. R:A | A- R+ R! A. x:A x:A ", "R", 1},
    {"NoScreenOrItself", "R:0 push:0 R:R push:R", "R:0 push:0 R:R push:R ", "R", 4},
    {"OnePresentedAtATime", "R:A R:B A:A", "R- A+ A! R. R:A R:B A:A ", "A", 2},
    {"PushAndPop", "push:A | pop", "R- A+ R. A! push:A | A- R+ A. R! pop ", "R"},
    {"TheLastScreenStays", "pop", "pop ", "R", 1},
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
    EXPECT_EQ(logged.messages.size(), GetParam().messages);
}

INSTANTIATE_TEST_SUITE_P(, ControllerScripts, testing::ValuesIn(kScripts),
                         [](const auto& script) { return std::string(script.param.name); });

using ControllerTest = ControllerBench;

TEST_F(ControllerTest, ScreensLiveUntilTheirCompletion)
{
    const auto noteLife = [this](std::weak_ptr<UIViewController> screen) {
        return [this, screen] { log += screen.expired() ? "dead " : "alive "; };
    };
    auto leaving = screen("A");
    stack->pushViewController(leaving, true);
    turns();
    EXPECT_EQ(stack->popViewController(true, noteLife(leaving)), leaving);
    auto presenter = std::make_shared<HeardScreen>("S", log);
    presenter->present(screen("B"), true, noteLife(presenter));
    const std::weak_ptr<UIViewController> gone[] = {std::exchange(leaving, nullptr), std::exchange(presenter, nullptr)};
    log.clear();
    EXPECT_EQ(heard(), "A- R+ A. R! alive B+ B! alive ");
    EXPECT_TRUE(gone[0].expired() && gone[1].expired());
}

TEST_F(ControllerTest, CompletionsMayGoOn)
{
    const auto a = screen("A");
    rootScreen->present(a, true);
    a->dismiss(true, [&] {
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
        started += transition.duration > 0 ? "slowly " : "at once ";
        finish = std::move(finished);
    }

    std::string started;
    std::function<void()> finish;
};

TEST_F(ControllerTest, HostsTakeTheirTimeOneTransitionAtATime)
{
    const auto host = std::make_shared<SlowHost>();
    PresentationHost::setCurrent(host);
    const auto s = screen("S", Style::OverCurrentContext);
    rootScreen->present(s, true, note("shown"));
    s->dismiss(false, note("gone"));
    EXPECT_EQ(heard(), "S+ ");
    std::exchange(host->finish, {})();
    EXPECT_EQ(heard(), "S! shown S- ");
    EXPECT_EQ(host->started, "slowly at once ");
    PresentationHost::setCurrent(nullptr); // the window closes in the middle of it
    EXPECT_EQ(heard(), "S. gone ");

    const auto late = host->finish;
    PresentationHost::setCurrent(host);
    rootScreen->present(s, true);
    turns();
    late(); // of another transition than the one under way
    EXPECT_EQ(heard(), "S+ ");
    PresentationHost::setCurrent(nullptr);
}

TEST_F(ControllerTest, ScreensHearOfTheWindowsSizeAndFollowItIfTheyLike)
{
    const auto a = screen("A");
    a->follows = true;
    stack->pushViewController(a, false);
    stack->present(screen("S", Style::OverFullScreen), false);
    EXPECT_TRUE(heard().starts_with("R- A+ Al "));
    const CGSize loaded = rootScreen->view().bounds().size;
    for (const CGSize size : {CGSize{500, 400}, CGSize{300, 200}, CGSize{-1, 5}})
        window.setSize(size);
    EXPECT_EQ(log, "") << "never within the caller's layout";
    EXPECT_EQ(heard(), "Rt At St Al ");
    EXPECT_EQ(a->view().bounds().size, (CGSize{300, 200}));
    EXPECT_EQ(rootScreen->view().bounds().size, loaded);
    EXPECT_EQ(rootScreen->interfaceOrientation(), UIInterfaceOrientation::LandscapeRight);

    auto other = std::make_unique<UIWindow>();
    other->setRootViewController(screen("B"));
    other->setSize({50, 50});
    other.reset();
    EXPECT_EQ(heard(), "B+ B! ") << "the size came to nobody";
}

TEST_F(ControllerTest, AlertsCloseBeforeTheirChoiceRuns)
{
    const auto question = UIAlertController::make(
        "", "", {{"YES", UIAlertActionStyle::Destructive, note("yes")}, {"NO", UIAlertActionStyle::Cancel, {}}});
    rootScreen->present(question, true, note("shown"));
    EXPECT_EQ(heard(), "shown "); // the presenter stays where it is
    for (const int button : {2, -1, 0, 1})
        question->tap(button);
    EXPECT_EQ(log, "");
    EXPECT_EQ(heard(), "yes ");
    EXPECT_EQ(logged.messages.size(), 3u);
}

TEST_F(ControllerTest, SeguesFindTheirWayOrTellThatThereIsNone)
{
    const auto storyboard = UIStoryboard::named("ControllerTest");
    storyboard->addScene("plain", {[] { return std::make_shared<UIViewController>(); }, ""});
    for (const char* const scene : {"plain", "missing"})
        storyboard->addSegue(scene, scene, UIStoryboard::SegueKind::Show);
    const auto source = storyboard->instantiateViewController("plain");
    source->performSegue("plain"); // no stack to push on
    EXPECT_NE(source->presentedViewController(), nullptr);
    EXPECT_TRUE(logged.messages.empty());
    for (const char* const segue : {"missing", "unknown"})
        source->performSegue(segue);
    rootScreen->performSegue("plain"); // made by no storyboard
    EXPECT_EQ(logged.messages.size(), 3u);
}

} // namespace
} // namespace lamina::test
