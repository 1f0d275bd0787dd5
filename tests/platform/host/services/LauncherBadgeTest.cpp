#include "platform/host/services/LauncherBadge.h"

#include "EventPump.h"
#include "TestDesktop.h"

#include <atomic>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

TEST(LauncherBadges, TellWhatChangesAndAnswerThoseWhoAskLater)
{
    TestDesktop desktop;
    ASSERT_TRUE(desktop.isRunning());
    LauncherBadge badge;
    badge.setNumber(4);
    badge.setNumber(0); // gone before there was a bus
    ASSERT_TRUE(DispatchQueue::main().runUntilIdle(20));
    for (const int number : {5, 5, 12, 0})
        badge.setNumber(number);
    ASSERT_TRUE(runUntil([&] { return desktop.badges().size() >= 3; }));
    EXPECT_EQ(desktop.badges(), QList<qlonglong>({5, 12, 0}));
    badge.setNumber(99'999);
    ASSERT_TRUE(runUntil([&] { return desktop.badges().size() == 4; }));
    EXPECT_EQ(desktop.askedBadge(), 99'999);
}

TEST(LauncherBadges, LookForNoBusBeforeThereIsANumberAndAreSilentWithoutOne)
{
    std::atomic<int> looked = 0;
    LauncherBadge badge([&] {
        ++looked;
        return QDBusConnection(QStringLiteral("none"));
    });
    badge.setNumber(0);
    runFor(20);
    EXPECT_EQ(looked, 0);
    badge.setNumber(3);
    ASSERT_TRUE(DispatchQueue::main().runUntilIdle(20));
    badge.setNumber(4);
    EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
    EXPECT_EQ(looked, 1);
}

} // namespace
} // namespace lamina::test
