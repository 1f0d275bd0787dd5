#include "platform/view/FailureAlert.h"

#include "ControllerBench.h"
#include "platform/application/UIApplication.h"
#include "platform/base/Localization.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"

#include <cstdlib>
#include <string>
#include <thread>

namespace lamina::test {
namespace {

using FailureAlertTest = ControllerBench;

TEST_F(FailureAlertTest, NamesTheSubjectAndTheTranslatedCause)
{
    setTextLookup([](std::string_view key) { return std::string(key == "the disk is full" ? "voll" : ""); });
    const std::string home = std::getenv("HOME");
    presentFailure(*rootScreen, "Can’t save", {home + "/a.png", "the disk is full"});
    turns();
    setTextLookup({});
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->title() + '|' + alert()->message(), "Can’t save|~/a.png: voll.");
}

TEST_F(FailureAlertTest, LiesOverWhateverIsOnTopWhenItsTurnComes)
{
    const auto a = screen("A");
    const auto b = screen("B");
    rootScreen->present(a, true);
    a->present(b, true);
    presentFailure(*rootScreen, "first", {}); // while they are still on their way
    presentFailure(*b, "second", {});         // over the first
    turns();
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->title(), "second");
    EXPECT_EQ(alert()->presentingViewController()->presentingViewController(), b);

    presentFailure(*b, "third", {});
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
