#include "ControllerBench.h"

#include "platform/view/UIStoryboard.h"

namespace lamina {
namespace {

class ControllerNavigationTest : public test::ControllerBench {};

TEST_F(ControllerNavigationTest, PushAndPop)
{
    int changes = 0;
    QObject::connect(stack.get(), &UINavigationController::viewControllersChanged, [&] { ++changes; });
    const auto a = screen("A");
    const auto b = screen("B");
    stack->pushViewController(a, true, note("pushed"));
    EXPECT_EQ(stack->topViewController(), a);
    EXPECT_EQ(a->navigationController(), stack);
    EXPECT_EQ(log, "");
    EXPECT_EQ(heard(), "R- A+ R. A! pushed ");
    EXPECT_EQ(stack->popViewController(true, note("popped")), a);
    EXPECT_EQ(a->navigationController(), nullptr);
    EXPECT_EQ(heard(), "A- R+ A. R! popped ");
    stack->pushViewController(a, false);
    stack->pushViewController(b, false);
    turns();
    log.clear();
    stack->popToRootViewController(true);
    EXPECT_EQ(heard(), "B- R+ B. R! ");
    EXPECT_EQ(changes, 5);
    EXPECT_EQ(window.topViewController(), rootScreen);
}

TEST_F(ControllerNavigationTest, TheLastScreenStays)
{
    EXPECT_EQ(stack->popViewController(true, note("refused")), nullptr);
    EXPECT_EQ(heard(), "refused ");
    stack->pushViewController(nullptr, true, note("null"));
    stack->pushViewController(rootScreen, true, note("twice"));
    EXPECT_EQ(heard(), "null twice ");
    EXPECT_EQ(stack->viewControllers().size(), 1u);
    EXPECT_EQ(messages, 3);
}

TEST_F(ControllerNavigationTest, PoppedScreensLiveUntilTheCompletion)
{
    stack->pushViewController(screen("A"), true);
    turns();
    std::weak_ptr<UIViewController> life = stack->topViewController();
    stack->popViewController(true, [this, life] { log += life.expired() ? "dead " : "alive "; });
    EXPECT_TRUE(heard().ends_with("alive "));
    EXPECT_TRUE(life.expired());
}

TEST_F(ControllerNavigationTest, AStackOutOfSightIsQuiet)
{
    const auto cover = screen("C");
    rootScreen->present(cover, true);
    turns();
    log.clear();
    stack->pushViewController(screen("A"), true, note("pushed"));
    EXPECT_EQ(heard(), "pushed ");
    cover->dismiss(true);
    EXPECT_EQ(heard(), "C- A+ A! C. ");
}

/// Hands itself over to the next screen.
class Source : public UIViewController {
public:
    void prepareForSegue(UIStoryboardSegue& segue, QObject* sender) override
    {
        prepared = segue.identifier;
        preparedBy = sender;
        segue.destinationViewController.setTitle("prepared");
        wrongClass = segue.destination<UINavigationController>() != nullptr;
    }

    std::string prepared;
    QObject* preparedBy = nullptr;
    bool wrongClass = false;
};

TEST_F(ControllerNavigationTest, SeguesMakePrepareAndShow)
{
    const auto storyboard = UIStoryboard::named("ControllerNavigationTest");
    EXPECT_EQ(UIStoryboard::named("ControllerNavigationTest"), storyboard);
    storyboard->addScene("source", {[] { return std::make_shared<Source>(); }, ""});
    storyboard->addScene("plain", {[] { return std::make_shared<UIViewController>(); }, ""});
    storyboard->addScene("broken", {[] { return std::shared_ptr<UIViewController>(); }, ""});
    storyboard->addSegue("next", "plain", UIStoryboard::SegueKind::Show);
    storyboard->addSegue("over", "plain", UIStoryboard::SegueKind::Present);
    storyboard->addSegue("nowhere", "missing", UIStoryboard::SegueKind::Show);

    const auto source = storyboard->instantiate<Source>("source");
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(source->storyboard(), storyboard);
    EXPECT_EQ(source->scene(), storyboard->scenes().at("source").get());
    stack->pushViewController(source, false);
    source->performSegue("next", rootScreen.get());
    EXPECT_EQ(source->prepared, "next");
    EXPECT_EQ(source->preparedBy, rootScreen.get());
    EXPECT_FALSE(source->wrongClass);
    EXPECT_EQ(stack->topViewController()->title(), "prepared");
    EXPECT_EQ(stack->topViewController()->storyboard(), storyboard);
    turns();
    stack->popViewController(false);
    source->performSegue("over");
    EXPECT_EQ(stack->topViewController(), source);
    ASSERT_NE(source->presentedViewController(), nullptr);
    EXPECT_EQ(source->presentedViewController()->title(), "prepared");
    turns();
    source->dismiss(false);
    EXPECT_EQ(messages, 0);

    const auto alone = storyboard->instantiate<Source>("source");
    alone->performSegue("next"); // no stack to push on
    EXPECT_NE(alone->presentedViewController(), nullptr);

    source->performSegue("unknown");
    source->performSegue("nowhere");
    rootScreen->performSegue("next"); // made by no storyboard
    EXPECT_EQ(storyboard->instantiateViewController("broken"), nullptr);
    EXPECT_EQ(messages, 4);
    turns();
    EXPECT_EQ(stack->topViewController(), source);
}

} // namespace
} // namespace lamina
