#include "ChildProcess.h"
#include "CommandRunner.h"

#include "platform/files/FileWriting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

/// The cause of failure, empty on success.
std::string write(const std::string& path, const std::string& content)
{
    const Outcome outcome =
        writeFileAtomically(path, {reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
    if (outcome)
        return "";
    EXPECT_EQ(outcome.error().subject, path);
    return outcome.error().cause;
}

using Names = std::vector<std::string>;

TEST(WriteFileAtomically, WritesNewFilesAndReplacesOldOnes)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("out.png");
    const mode_t before = ::umask(027);
    EXPECT_EQ(write(path, "first"), "");
    ::umask(before);
    EXPECT_EQ(readFile(path), "first");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
    fs::permissions(path, fs::perms(0604));
    EXPECT_EQ(write(path, "the second, longer one"), "");
    EXPECT_EQ(readFile(path), "the second, longer one");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0604));
    EXPECT_EQ(folder.names(), Names{"out.png"});
}

TEST(WriteFileAtomically, LetsALibraryWriteByAPathOrLeavesTheFileAsItWas)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("film.mp4");
    const auto fill = [](const std::string& open) {
        writeFile(open, "first half,");
        writeFile(open, readFile(open) + " second half");
        return success();
    };
    EXPECT_TRUE(writeFileAtomically(path, fill));
    EXPECT_EQ(readFile(path), "first half, second half");
    const Outcome failed = writeFileAtomically(path, [](const std::string& open) {
        writeFile(open, "no more than this");
        return Outcome(Error{open, "the pen broke"});
    });
    EXPECT_EQ(failed.error().message(), path + ": the pen broke");
    EXPECT_EQ(readFile(path), "first half, second half");
    EXPECT_EQ(writeFileAtomically("/dev/null", fill).error().cause, "not a regular file");
    EXPECT_EQ(folder.names(), Names{"film.mp4"});
}

TEST(WriteFileAtomically, KeepsLinksAndReplacesWhatTheyMean)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.path("far"));
    writeFile(folder.path("far/file"), "old");
    fs::create_symlink("far/next", folder.path("link"));
    fs::create_symlink("file", folder.path("far/next")); // relative to its own folder
    EXPECT_EQ(write(folder.path("link"), "new"), "");
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_TRUE(fs::is_symlink(folder.path("far/next")));
    EXPECT_EQ(readFile(folder.path("far/file")), "new");
    fs::create_symlink("circle", folder.path("circle"));
    EXPECT_EQ(write(folder.path("circle"), "x"), "a symbolic link leads in a circle");
}

TEST(WriteFileAtomically, SaysPlainlyWhatIsWrong)
{
    const TemporaryFolder folder;
    writeFile(folder.path("file"), "kept");
    EXPECT_EQ(write(folder.path("none/out.png"), "x"), "no such folder");
    EXPECT_EQ(write(folder.path("file") + "/out.png", "x"), "no such folder");
    EXPECT_EQ(write(folder.path() + "/", "x"), "is a folder");
    EXPECT_EQ(write("", "x"), "this is not the name of a file");
    EXPECT_EQ(write(folder.path(std::string(300, 'n')), "x"), "the name is too long");
    EXPECT_EQ(folder.names(), Names{"file"});
}

// As a user who may not, and as on a disk that fills up: the write stops in the middle, with a signal that would end
// the process.
TEST(WriteFileAtomically, LeavesEverythingAsItWasWhereItCannotWrite)
{
    const TemporaryFolder folder;
    for (const char* name : {"full", "protected"})
        writeFile(folder.path(name), "kept");
    fs::permissions(folder.path("protected"), fs::perms(0444));
    fs::permissions(folder.path("full"), fs::perms(0666));
    fs::permissions(folder.path(), fs::perms(0777));
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr rlimit kLimit{1 << 16, 1 << 16};
        if (::setrlimit(RLIMIT_FSIZE, &kLimit) != 0 || (::geteuid() == 0 && ::setuid(65534) != 0))
            ::_exit(100);
        const std::string large(1 << 20, 'x');
        ::_exit((write(folder.path("protected"), "x") != "permission denied") +
                (write(folder.path("full"), large) != "the file is too large for the device") +
                (write("/dev/full", "x") != "no space left on the device") + // written to, not replaced
                !write(folder.path("allowed"), "x").empty());
    }
    EXPECT_EQ(exitCodeOf(child), 0);
    EXPECT_EQ(readFile(folder.path("protected")), "kept");
    EXPECT_EQ(readFile(folder.path("full")), "kept");
    EXPECT_EQ(folder.names(), (Names{"allowed", "full", "protected"}));
}

/// "written", "taken" or the cause of failure.
std::string writeNew(const std::string& path, const std::string& content)
{
    const Result<bool> result =
        writeNewFile(path, {reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
    if (!result)
        return result.error().cause;
    return *result ? "written" : "taken";
}

TEST(WriteNewFile, TouchesNothingThatStandsThere)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.path("folder"));
    fs::create_symlink("nowhere", folder.path("dangling"));
    EXPECT_EQ(writeNew(folder.path("file"), "first"), "written");
    EXPECT_EQ(writeNew(folder.path("file"), "second"), "taken");
    EXPECT_EQ(writeNew(folder.path("folder"), "x"), "taken");
    EXPECT_EQ(writeNew(folder.path("dangling"), "x"), "taken");
    EXPECT_EQ(readFile(folder.path("file")), "first");
    EXPECT_EQ(writeNew(folder.path() + "/", "x"), "is a folder");
    EXPECT_EQ(writeNew("", "x"), "this is not the name of a file");
    EXPECT_EQ(folder.names(), (Names{"dangling", "file", "folder"}));
}

TEST(WriteNewFile, OneOfManyGetsTheName)
{
    const TemporaryFolder folder;
    std::atomic<int> won{0};
    std::vector<std::jthread> writers(8);
    for (std::jthread& writer : writers) {
        writer = std::jthread([&] {
            for (int name = 0; name < 50; ++name)
                won += writeNew(folder.path(std::to_string(name)), std::string(1000, 'x')) == "written";
        });
    }
    writers.clear();
    EXPECT_EQ(won, 50);
    EXPECT_EQ(folder.names().size(), 50u);
}

} // namespace
} // namespace lamina::test
