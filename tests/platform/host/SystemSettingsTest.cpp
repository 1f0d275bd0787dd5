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
    const Variable textScale{"LAMINA_TEXT_SCALE", ""};
    const Variable reducedMotion{"LAMINA_REDUCED_MOTION", ""};
};

TEST_F(Settings, FollowTheDesktop)
{
    TestPortal portal;
    portal.setSetting(kGnome, "text-scaling-factor", 1.25);
    portal.setSetting(kGnome, "enable-animations", false);
    SystemSettings settings;
    EXPECT_EQ(settings.textScale(), 1.0) << "nothing waits for the portal";
    EXPECT_FALSE(settings.reducedMotion());
    int changes = 0;
    QObject::connect(&settings, &SystemSettings::textScaleChanged, [&] { ++changes; });
    QObject::connect(&settings, &SystemSettings::reducedMotionChanged, [&] { ++changes; });
    ASSERT_TRUE(runUntil([&] { return changes == 2; }));
    const struct {
        QString group, key;
        QVariant told;
        double scale;
        bool reduced;
    } steps[] = {
        {kGnome, "enable-animations", true, 1.25, false},
        {kGnome, "text-scaling-factor", 9.0, 2, false},
        {kGnome, "text-scaling-factor", 0.1, 0.5, false},
        {kGnome, "text-scaling-factor", 1.5, 1.5, false},
        // Each desktop has its own word for reduced motion.
        {kGnome, "enable-animations", false, 1.5, true},
        {kGnome, "enable-animations", true, 1.5, false},
        {kCommon, "reduced-motion", 1u, 1.5, true},
        {kCommon, "reduced-motion", 0u, 1.5, false},
        {kKde, "AnimationDurationFactor", "0", 1.5, true},
        {kKde, "AnimationDurationFactor", "0.5", 1.5, false},
        {kKde, "AnimationDurationFactor", 0.0, 1.5, true},
        {kKde, "AnimationDurationFactor", 1.0, 1.5, false},
    };
    for (const auto& c : steps) {
        portal.setSetting(c.group, c.key, c.told);
        EXPECT_TRUE(runUntil([&] { return settings.textScale() == c.scale && settings.reducedMotion() == c.reduced; }))
            << c.key.toStdString() << ": " << settings.textScale() << ", " << settings.reducedMotion();
    }
    EXPECT_EQ(changes, 14);

    const std::pair<QString, QVariant> nonsense[] = {
        {"text-scaling-factor", "large"}, {"text-scaling-factor", qQNaN()}, {"text-scaling-factor", QStringList{"2"}},
        {"enable-animations", "no"},      {"font-name", "Cantarell 11"},
    };
    for (const auto& [key, value] : nonsense)
        portal.setSetting(kGnome, key, value);
    portal.setSetting(kKde, "AnimationDurationFactor", "");
    portal.setSetting(kCommon, "text-scaling-factor", 2.0);
    portal.setSetting(kCommon, "reduced-motion", 7u);
    runFor(50);
    EXPECT_EQ(changes, 14);
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
        {"1.75", "", 1.75, true},
        {"", "0", 1.25, false},
        {"30", "1", 2, true},
        {"wide", "maybe", 1.25, true},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(testing::Message() << c.scale << " " << c.motion);
        const Variable scale("LAMINA_TEXT_SCALE", c.scale);
        const Variable motion("LAMINA_REDUCED_MOTION", c.motion);
        const SystemSettings settings;
        const auto isAsWanted = [&] {
            return settings.textScale() == c.wantedScale && settings.reducedMotion() == c.wantedMotion;
        };
        EXPECT_TRUE(runUntil(isAsWanted)) << settings.textScale() << ", " << settings.reducedMotion();
        runFor(20);
        EXPECT_TRUE(isAsWanted()) << "it stays";
    }
}

} // namespace
} // namespace lamina::test
