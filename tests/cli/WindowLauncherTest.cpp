#include "CommandRunner.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

TEST(WindowLauncher, TheCommandAloneBecomesTheWindowBesideIt)
{
    const TemporaryFolder folder;
    const std::string command = folder.path("lamina");
    std::filesystem::copy_file(LAMINA_COMMAND, command);
    const CommandResult alone = runCommand("/usr/bin/env", {"PATH=/nowhere", command});
    EXPECT_EQ(alone.exitCode, 1);
    EXPECT_THAT(alone.errors, testing::StartsWith("lamina: lamina-app: "));

    writeFile(folder.path("lamina-app"), "#!/bin/sh\necho \"window: $*\"\nexit 7\n");
    std::filesystem::permissions(folder.path("lamina-app"), std::filesystem::perms::owner_all);
    EXPECT_EQ(runCommand(command, {}).output, "window: \n");
    const CommandResult run =
        runCommand(command, {"--photos", "/b", "--screen", "picker", "--new-window", "--photos", "/tmp/a b"});
    EXPECT_EQ(run.output, "window: --screen picker --photos /b --photos /tmp/a b --new-window\n");
    writeFile(folder.path("-a.jpg"), "");
    EXPECT_EQ(
        runCommand("/usr/bin/env", {"-C", folder.path(), command, "--screen", "two", "lamina", "--", "-a.jpg"}).output,
        "window: --screen two -- lamina -a.jpg\n");
    EXPECT_EQ(run.exitCode, 7) << "the window's own code is the command's";
}

} // namespace
} // namespace lamina::test
