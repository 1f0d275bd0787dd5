#include "platform/host/system/SystemURLOpener.h"

#include "CommandRunner.h"
#include "Environment.h"
#include "EventPump.h"
#include "platform/application/UIApplication.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace lamina::test {
namespace {

/// Programs of the test's own that write down how they were called.
class URLOpener : public testing::Test {
protected:
    void install(const std::string& program)
    {
        writeFile(folder.path(program), "#!/bin/sh\necho \"" + program + " $*\" >'" + folder.path("started.new") +
                                            "'\nmv '" + folder.path("started.new") + "' '" + folder.path("started") +
                                            "'\n");
        std::filesystem::permissions(folder.path(program), std::filesystem::perms::owner_all);
    }
    /// What was started, or "" when opening failed.
    std::string opened(const std::string& url)
    {
        std::filesystem::remove(folder.path("started"));
        if (!UIApplication::shared().openURL(url))
            return "";
        EXPECT_TRUE(runUntil([this] { return std::filesystem::exists(folder.path("started")); })) << url;
        return readFile(folder.path("started"));
    }

    void SetUp() override { installSystemURLOpener(); }
    void TearDown() override { UIApplication::shared().setURLOpener({}); }

    const TemporaryFolder folder;
    const Variable path{"PATH", folder.path() + ":/usr/bin:/bin"};
    Variable desktop{"XDG_CURRENT_DESKTOP", ""};
};

TEST_F(URLOpener, HandsLinksToTheDesktopAndRefusesTheRest)
{
    install("xdg-open");
    for (const char* const url :
         {"https://example.org/a?q=%20#x", "mailto:me@example.org", "file:///tmp/caf%E9%20x.png"})
        EXPECT_EQ(opened(url), std::string("xdg-open ") + url + "\n");
    for (const char* const url :
         {"", "https:", "https://", "https://exa mple.org", "https://example.org/a b", "/tmp/a.png", "file://nas/a.png",
          "javascript:alert(1)", "smb://nas/a", "--help", "app-settings"})
        EXPECT_FALSE(openSystemURL(url)) << url;
    EXPECT_FALSE(openSystemURL(UIApplicationOpenSettingsURLString)) << "no settings program is there";
}

TEST_F(URLOpener, OpensTheSettingsOfTheRunningDesktop)
{
    const std::string gnome = "gnome-control-center applications org.lamina.lamina\n";
    install("systemsettings");
    EXPECT_EQ(opened(UIApplicationOpenSettingsURLString), "systemsettings \n");
    install("gnome-control-center");
    EXPECT_EQ(opened(UIApplicationOpenSettingsURLString), gnome);
    desktop.set("phosh:GNOME");
    EXPECT_EQ(opened(UIApplicationOpenSettingsURLString), gnome);
    install("plasma-open-settings");
    desktop.set("KDE");
    EXPECT_EQ(opened(UIApplicationOpenSettingsURLString), "plasma-open-settings \n");
}

} // namespace
} // namespace lamina::test
