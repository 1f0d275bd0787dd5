#include "platform/view/FailureAlert.h"

#include "ControllerBench.h"
#include "platform/base/Localization.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"
#include "platform/view/UIApplication.h"

#include <thread>

namespace lamina::test {
namespace {

class FailureAlertTest : public ControllerBench {
protected:
    ~FailureAlertTest() override { setTextLookup({}); }
};

TEST_F(FailureAlertTest, NamesTheSubjectAndTheTranslatedCause)
{
    setTextLookup([](std::string_view key) { return std::string(key == "the disk is full" ? "voll" : ""); });
    for (const auto& [error, message] : {std::pair(Error{"a.png", "the disk is full"}, "a.png: voll."),
                                         std::pair(Error{"", "the disk is full"}, "voll")}) {
        presentFailure(*rootScreen, "Can’t save", error);
        turns();
        ASSERT_TRUE(alert());
        EXPECT_EQ(alert()->title() + '|' + alert()->message(), std::string("Can’t save|") + message);
        ASSERT_EQ(alert()->actions().size(), 1u);
        EXPECT_EQ(alert()->actions()[0].title, "OK");
        alert()->tap(0);
        turns();
    }
}

TEST_F(FailureAlertTest, LiesOverWhateverIsOnTopWhenItsTurnComes)
{
    const auto a = screen("A");
    const auto inStack = screen("B");
    const auto above = UINavigationController::make(inStack);
    rootScreen->present(a, true);
    a->present(above, true);
    presentFailure(*rootScreen, "first", {}); // while they are still on their way
    presentFailure(*inStack, "second", {});   // over the first
    turns();
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->title(), "second");
    EXPECT_EQ(alert()->presentingViewController()->presentingViewController(), above);

    presentFailure(*inStack, "third", {});
    a->dismiss(false); // with all that stands above it, before its turn
    turns();
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->title(), "third");
    EXPECT_EQ(alert()->presentingViewController(), a);
}

TEST(Application, WarnsOfShortMemoryOnTheMainThread)
{
    std::thread::id warnedOn;
    const auto observer = NotificationCenter::defaultCenter().addObserver(
        UIApplicationDidReceiveMemoryWarningNotification,
        [&](const Notification&) { warnedOn = std::this_thread::get_id(); });
    std::thread([] { UIApplication::didReceiveMemoryWarning(); }).join();
    EXPECT_EQ(warnedOn, std::thread::id());
    DispatchQueue::main().drain();
    EXPECT_EQ(warnedOn, std::this_thread::get_id());
}

} // namespace
} // namespace lamina::test
