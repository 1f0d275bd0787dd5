#include "CommandRunner.h"

#include "platform/files/FileReading.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace lamina::test {
namespace {

constexpr std::size_t kLimit = 100'000;
constexpr PipePatience kShort{0.2, 1.5};

/// What is read, or why not.
std::string read(const std::string& path)
{
    const auto bytes = readSmallInput(path, kLimit, kShort);
    if (bytes)
        return {bytes->begin(), bytes->end()};
    EXPECT_EQ(bytes.error().subject, path);
    return "cause: " + bytes.error().cause;
}

TEST(ReadSmallInput, ReadsFilesAndRefusesWhatHasNoEnd)
{
    const TemporaryFolder folder;
    writeFile(folder.path("small"), "text");
    writeFile(folder.path("large"), std::string(kLimit + 1, 'x'));
    const std::pair<std::string, const char*> cases[] = {
        {folder.path("small"), "text"},
        {folder.path("large"), "cause: the file is too large"},
        {folder.path("none"), "cause: no such file"},
        {folder.path(), "cause: is a folder"},
        {"/dev/zero", "cause: not a regular file"},
        {std::string("/dev/null\0x", 11), "cause: no such file"},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(read(path), expected) << path;
}

TEST(ReadSmallInput, WaitsForPipesAsLongAsBytesCome)
{
    ::signal(SIGPIPE, SIG_IGN); // writers outlive the reader here
    const TemporaryFolder folder;
    const std::string path = folder.path("pipe");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(read(path), "cause: nobody writes to it");

    struct Case {
        std::string piece;
        int pieces;
        std::string expected;
        unsigned pause = 100'000; // microseconds
    };
    const Case cases[] = {
        {"", 0, ""},
        {"x", 2, "xx", 400'000},
        {std::string(kLimit / 2, 'x'), 2, std::string(kLimit, 'x')},
        {std::string(kLimit / 2, 'x'), 3, "cause: the file is too large"},
        {"x", 100, "cause: is not written to its end"},
    };
    for (const auto& [piece, pieces, expected, pause] : cases) {
        std::thread writer([&] {
            const FileDescriptor pipe(::open(path.c_str(), O_WRONLY));
            for (int i = 0; i<pieces&& ::write(pipe.get(), piece.data(), piece.size())> 0; ++i)
                ::usleep(pause);
        });
        EXPECT_EQ(read(path), expected);
        writer.join();
    }
}

} // namespace
} // namespace lamina::test
