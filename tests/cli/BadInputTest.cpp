#include "CommandRunner.h"
#include "TestPaths.h"
#include "TestPictures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lamina::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

#if defined(__SANITIZE_ADDRESS__)
constexpr long kMemoryLimitKilobytes = 2'000'000; // shadow memory and quarantine come on top
#else
constexpr long kMemoryLimitKilobytes = 300'000;
#endif

std::string bigEndian(std::uint32_t value)
{
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
            static_cast<char>(value)};
}

/// The bytes of a sample photo with the sides in its frame header overwritten.
std::string jpegClaiming(int width, int height)
{
    std::string bytes = readFile(samples("meadow.jpg"));
    std::size_t at = 2;
    while (static_cast<std::uint8_t>(bytes[at + 1]) != 0xC0 && static_cast<std::uint8_t>(bytes[at + 1]) != 0xC2)
        at += 2 + 256 * static_cast<std::uint8_t>(bytes[at + 2]) + static_cast<std::uint8_t>(bytes[at + 3]);
    bytes[at + 5] = static_cast<char>(height >> 8);
    bytes[at + 6] = static_cast<char>(height);
    bytes[at + 7] = static_cast<char>(width >> 8);
    bytes[at + 8] = static_cast<char>(width);
    return bytes;
}

class BadInput : public testing::Test {
protected:
    void SetUp() override { writePng(good(), rampPicture(64, 48, 90)); }
    std::string good() const { return folder.path("good.png"); }

    /// Runs with the file as either photo and checks what every refusal has in common.
    void expectRefusal(const std::string& path, const std::string& cause, const CommandOptions& options = {})
    {
        SCOPED_TRACE(path);
        const std::vector<std::string> before = folder.names();
        for (const bool first : {true, false}) {
            const CommandResult run = runCommand(
                LAMINA_COMMAND, {"blend", first ? path : good(), first ? good() : path, "-o", folder.path("out.png")},
                options);
            EXPECT_EQ(run.exitCode, 3);
            EXPECT_EQ(run.output, "");
            EXPECT_THAT(run.errors, testing::StartsWith("lamina: " + path + ": "));
            EXPECT_THAT(run.errors, HasSubstr(cause));
            EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
            EXPECT_LT(run.peakKilobytes, kMemoryLimitKilobytes);
            EXPECT_EQ(folder.names(), before);
        }
    }

    std::string made(const std::string& name, const std::string& content)
    {
        writeFile(folder.path(name), content);
        return folder.path(name);
    }

    TemporaryFolder folder;
};

TEST_F(BadInput, WhatIsNoPhotoGetsOneLineWithTheCause)
{
    expectRefusal(folder.path("nowhere.jpg"), "no such file");
    expectRefusal(folder.path("no/where.jpg"), "no such file");
    expectRefusal(folder.path(), "folder");
    expectRefusal(made("empty.jpg", ""), "empty");
    expectRefusal(made("text.jpg", "This is no photo, whatever its name says.\n"), "not a picture");
    expectRefusal("/dev/zero", "not a regular file");
    ASSERT_EQ(::mkfifo(folder.path("pipe.jpg").c_str(), 0600), 0);
    expectRefusal(folder.path("pipe.jpg"), "not a regular file");
}

TEST_F(BadInput, AFileWithoutPermissionIsTold)
{
    const std::string secret = made("secret.png", readFile(good()));
    ::chmod(secret.c_str(), 0000);
    ::chmod(folder.path().c_str(), 0755);
    CommandOptions options;
    options.unprivileged = true;
    expectRefusal(secret, "permission", options);
}

TEST_F(BadInput, HalfAPhotoIsAnErrorAndNoGreyPicture)
{
    const std::string photo = readFile(samples("meadow.jpg"));
    for (const double share : {0.1, 0.5, 0.99})
        expectRefusal(
            made("cut.jpg", photo.substr(0, static_cast<std::size_t>(share * static_cast<double>(photo.size())))),
            "ends too early");
    const std::string png = readFile(good());
    expectRefusal(made("cut.png", png.substr(0, png.size() / 2)), "ends too early");
}

TEST_F(BadInput, ExtraBytesAtTheEndDoNotMatter)
{
    const std::string padded = made("padded.jpg", readFile(samples("meadow.jpg")) + std::string(5000, 'x'));
    EXPECT_EQ(runCommand(LAMINA_COMMAND, {"blend", padded, good(), "-o", folder.path("out.png")}).exitCode, 0);
}

TEST_F(BadInput, HostileClaimsAreRefusedBeforeMemoryIsTaken)
{
    expectRefusal(made("claim.jpg", jpegClaiming(60000, 60000)), "too large");
    // A PNG header alone, 60,000 pixels a side; a checksum that fits is not needed to refuse it.
    const std::string header =
        std::string("IHDR") + bigEndian(60000) + bigEndian(60000) + std::string("\x08\x06\0\0\0", 5);
    const std::string png = std::string("\x89PNG\r\n\x1a\n") + bigEndian(13) + header;
    expectRefusal(made("claim.png", png + bigEndian(0) + std::string(100, '\0')), "");
    // A complete and valid file: 361 million black pixels in 45 KB.
    const std::string bomb = folder.path("bomb.png");
    const std::string script =
        "import struct, sys, zlib\n"
        "def chunk(k, d): return struct.pack('>I', len(d)) + k + d + struct.pack('>I', zlib.crc32(k + d))\n"
        "rows = zlib.compress(bytes(19000 * (19000 // 8 + 1)), 9)\n"
        "open(sys.argv[1], 'wb').write(b'\\x89PNG\\r\\n\\x1a\\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', 19000, "
        "19000, "
        "1, 0, 0, 0, 0)) + chunk(b'IDAT', rows) + chunk(b'IEND', b''))\n";
    ASSERT_EQ(runCommand("/usr/bin/python3", {"-c", script, bomb}).exitCode, 0);
    expectRefusal(bomb, "too large");
}

TEST_F(BadInput, AnOutputThatCannotBeWrittenKeepsTheEarlierFile)
{
    const auto blendTo = [&](const std::string& target, const CommandOptions& options = {}) {
        const std::vector<std::string> before = folder.names();
        const CommandResult run = runCommand(LAMINA_COMMAND, {"blend", good(), good(), "-o", target}, options);
        EXPECT_EQ(run.exitCode, 4);
        EXPECT_THAT(run.errors, testing::StartsWith("lamina: " + target + ": "));
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
        EXPECT_EQ(folder.names(), before);
    };
    blendTo(folder.path("no/such/folder/out.png"));
    std::filesystem::create_directory(folder.path("folder.png"));
    blendTo(folder.path("folder.png"));

    const std::string earlier = made("earlier.png", "what was there before");
    CommandOptions fullDisk;
    fullDisk.fileSizeLimit = 1000;
    blendTo(earlier, fullDisk);
    EXPECT_EQ(readFile(earlier), "what was there before");

    ::chmod(good().c_str(), 0644);
    ::chmod(folder.path().c_str(), 0555);
    CommandOptions unprivileged;
    unprivileged.unprivileged = true;
    blendTo(earlier, unprivileged);
    EXPECT_EQ(readFile(earlier), "what was there before");
    ::chmod(folder.path().c_str(), 0755);
}

TEST_F(BadInput, AReaderThatGoesAwayIsAFailedOutput)
{
    const CommandResult run = runCommand(
        "/bin/sh", {"-c", std::string(LAMINA_COMMAND) + " blend '" + good() + "' '" + good() + "' -o - >/dev/full"});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, testing::StartsWith("lamina: standard output: "));
}

TEST_F(BadInput, AnInterruptionLeavesNothingBehind)
{
    CommandOptions options;
    options.input = readFile(good());
    options.interruptAfterMs = 700;
    const CommandResult run = runCommand(LAMINA_COMMAND, {"blend", good(), "-", "-o", folder.path("out.png")}, options);
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_THAT(folder.names(), ElementsAre("good.png"));
}

} // namespace
} // namespace lamina::test
