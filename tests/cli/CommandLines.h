#pragma once

#include "CommandRunner.h"
#include "TestPictures.h"
#include "platform/image/pixels/CGImage.h"

#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace lamina::test {

/// Runs command lines in a folder of their own, in which "small.png" lies, 3 × 2 opaque pixels of which each is
/// another, and "flat.png", 400 × 200 pixels of one colour. Results are expected in "out.png".
class CommandLines : public testing::Test {
protected:
    static constexpr Rgba kFlat{100, 200, 40, 255};

    static Rgba smallPixel(int x, int y)
    {
        return {static_cast<std::uint8_t>(10 + x + 100 * y), static_cast<std::uint8_t>(200 - 20 * x), 70, 255};
    }

    CommandLines()
    {
        writePng(folder.path("small.png"), makePicture(3, 2, smallPixel));
        writePng(folder.path("flat.png"), solidPicture(400, 200, kFlat));
    }

    /// Runs a line of shell in the folder, in which `lamina` is the command.
    CommandResult shell(const std::string& line, const CommandOptions& options = {}) const
    {
        const std::string before = "cd '" + folder.path() + "' && lamina() { '" LAMINA_COMMAND "' \"$@\"; } && ";
        return runCommand("/bin/sh", {"-c", before + line}, options);
    }
    /// What such a line makes of "out.png". Fails the running test where the line fails or tells anything.
    CGImage picture(const std::string& line) const
    {
        SCOPED_TRACE(line);
        std::filesystem::remove(folder.path("out.png"));
        const CommandResult run = shell(line);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.errors, "");
        return readPictureFile(folder.path("out.png"));
    }

    TemporaryFolder folder;
};

} // namespace lamina::test
