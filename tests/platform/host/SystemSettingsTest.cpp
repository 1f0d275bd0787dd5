#include "platform/host/system/SystemSettings.h"

#include "Environment.h"
#include "EventPump.h"
#include "TestPortal.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

const QString kGnome = "org.gnome.desktop.interface";
const QString kCommon = "org.freedesktop.appearance";
const QString kKde = "org.kde.kdeglobals.KDE";

class Settings : public testing::Test {
protected:
    /// Once the portal has been asked, its answer and what it told before have arrived a moment later.
    void waitForRead(const TestPortal& portal, int reads)
    {
        ASSERT_TRUE(runUntil([&] { return portal.settingsReads() == reads; }));
        runFor(30);
    }

    const Variable textScale{"LAMINA_TEXT_SCALE", ""};
    const Variable reducedMotion{"LAMINA_REDUCED_MOTION", ""};
};

TEST_F(Settings, FollowTheDesktop)
{
    TestPortal portal;
    ASSERT_TRUE(portal.isRunning());
    portal.setSetting(kGnome, "text-scaling-factor", 1.25);
    portal.setSetting(kGnome, "enable-animations", false);
    SystemSettings settings;
    EXPECT_EQ(settings.textScale(), 1.0) << "nothing waits for the portal";
    EXPECT_FALSE(settings.reducedMotion());
    int scaleChanges = 0;
    int motionChanges = 0;
    QObject::connect(&settings, &SystemSettings::textScaleChanged, [&] { ++scaleChanges; });
    QObject::connect(&settings, &SystemSettings::reducedMotionChanged, [&] { ++motionChanges; });
    ASSERT_TRUE(runUntil([&] { return scaleChanges + motionChanges == 2; }));
    EXPECT_EQ(settings.textScale(), 1.25);
    EXPECT_TRUE(settings.reducedMotion());

    portal.setSetting(kGnome, "enable-animations", true);
    ASSERT_TRUE(runUntil([&] { return motionChanges == 2; }));
    EXPECT_FALSE(settings.reducedMotion());
    const std::pair<QVariant, double> scales[] = {{9.0, 2.0}, {0.1, 0.5}, {1.5, 1.5}};
    for (const auto& [told, taken] : scales) {
        portal.setSetting(kGnome, "text-scaling-factor", told);
        EXPECT_TRUE(runUntil([&, wanted = taken] { return settings.textScale() == wanted; })) << taken;
    }
    EXPECT_EQ(scaleChanges, 4);
}

TEST_F(Settings, EachDesktopHasItsOwnWordForReducedMotion)
{
    TestPortal portal;
    SystemSettings settings;
    waitForRead(portal, 1);
    const struct {
        QString group, key;
        QVariant on, off;
    } words[] = {
        {kGnome, "enable-animations", false, true},
        {kCommon, "reduced-motion", 1u, 0u},
        {kKde, "AnimationDurationFactor", "0", "0.5"},
        {kKde, "AnimationDurationFactor", 0.0, 1.0},
    };
    for (const auto& word : words) {
        SCOPED_TRACE(word.key.toStdString());
        portal.setSetting(word.group, word.key, word.on);
        EXPECT_TRUE(runUntil([&] { return settings.reducedMotion(); }));
        portal.setSetting(word.group, word.key, word.off);
        EXPECT_TRUE(runUntil([&] { return !settings.reducedMotion(); }));
    }
}

TEST_F(Settings, NonsenseChangesNothing)
{
    TestPortal portal;
    portal.setSetting(kGnome, "text-scaling-factor", 1.25);
    SystemSettings settings;
    ASSERT_TRUE(runUntil([&] { return settings.textScale() == 1.25; }));
    portal.setSetting(kGnome, "text-scaling-factor", "large");
    portal.setSetting(kGnome, "text-scaling-factor", qQNaN());
    portal.setSetting(kGnome, "text-scaling-factor", QStringList{"2"});
    portal.setSetting(kGnome, "enable-animations", "no");
    portal.setSetting(kKde, "AnimationDurationFactor", "");
    portal.setSetting(kCommon, "text-scaling-factor", 2.0);
    portal.setSetting(kCommon, "reduced-motion", 7u);
    portal.setSetting(kGnome, "font-name", "Cantarell 11"); // what comes after it has been read
    runFor(50);
    EXPECT_EQ(settings.textScale(), 1.25);
    EXPECT_FALSE(settings.reducedMotion());
}

TEST_F(Settings, APortalMayComeLateOrAnew)
{
    SystemSettings settings;
    runFor(50);
    EXPECT_EQ(settings.textScale(), 1.0);
    for (const double scale : {1.5, 0.75}) {
        TestPortal portal;
        portal.setSetting(kGnome, "text-scaling-factor", scale);
        EXPECT_TRUE(runUntil([&] { return settings.textScale() == scale; }));
        EXPECT_TRUE(runUntil([&] { return portal.settingsReads() == 1; }))
            << "it may have set more before it was heard";
    }
    const SystemSettings alone([] { return QDBusConnection::connectToBus("unix:path=/nowhere/bus", "no bus"); });
    runFor(30);
    EXPECT_EQ(alone.textScale(), 1.0);
}

TEST_F(Settings, TheEnvironmentComesFirst)
{
    TestPortal portal;
    portal.setSetting(kGnome, "text-scaling-factor", 1.25);
    portal.setSetting(kGnome, "enable-animations", false);
    const struct {
        const char* scale;
        const char* motion;
        double wantedScale;
        bool wantedMotion;
    } table[] = {
        {"1.75", "", 1.75, true}, {"", "0", 1.25, false}, {"1.75", "0", 1.75, false},
        {"30", "1", 2, true},     {"", "", 1.25, true},   {"wide", "maybe", 1.25, true},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(testing::Message() << c.scale << " " << c.motion);
        const Variable scale("LAMINA_TEXT_SCALE", c.scale);
        const Variable motion("LAMINA_REDUCED_MOTION", c.motion);
        const SystemSettings settings;
        runFor(50);
        EXPECT_EQ(settings.textScale(), c.wantedScale);
        EXPECT_EQ(settings.reducedMotion(), c.wantedMotion);
    }
}

} // namespace
} // namespace lamina::test
