#include "CommandRunner.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

/// The command in a folder of its own, beside a stand-in for the window that tells its arguments.
class WindowLauncher : public testing::Test {
protected:
    WindowLauncher() { std::filesystem::copy_file(LAMINA_COMMAND, command()); }
    std::string command() const { return m_folder.path("lamina"); }
    void placeWindow()
    {
        writeFile(m_folder.path("lamina-app"), "#!/bin/sh\necho \"window: $*\"\nexit 7\n");
        std::filesystem::permissions(m_folder.path("lamina-app"), std::filesystem::perms::owner_all);
    }

private:
    TemporaryFolder m_folder;
};

TEST_F(WindowLauncher, TheCommandAloneBecomesTheWindowBesideIt)
{
    placeWindow();
    EXPECT_EQ(runCommand(command(), {}).output, "window: \n");
    const CommandResult run = runCommand(command(), {"--screen", "blend", "--photos", "/tmp/a b"});
    EXPECT_EQ(run.output, "window: --screen blend --photos /tmp/a b\n");
    EXPECT_EQ(run.exitCode, 7) << "the window's own code is the command's";
}

TEST_F(WindowLauncher, SaysSoWhereThereIsNoWindow)
{
    const CommandResult run = runCommand("/usr/bin/env", {"PATH=/nowhere", command()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, testing::StartsWith("lamina: lamina-app: "));
}

} // namespace
} // namespace lamina::test
