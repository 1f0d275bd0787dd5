#include "platform/host/services/LauncherBadge.h"

#include "EventPump.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

TEST(LauncherBadges, LookForNoBusBeforeThereIsANumber)
{
    bool looked = false;
    LauncherBadge badge([&] {
        looked = true;
        return QDBusConnection(QStringLiteral("none"));
    });
    badge.setNumber(0);
    runFor(20);
    EXPECT_FALSE(looked);
    badge.setNumber(3);
    EXPECT_TRUE(runUntil([&] { return looked; }));
}

} // namespace
} // namespace lamina::test
