#include "CommandRunner.h"

#include "platform/files/FileWriting.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
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

/// Runs `body` in a process of its own and gives what it returns; -1 when a signal ended it.
template <class Body>
int inChild(Body body)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(body());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
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
    EXPECT_EQ(write(path, ""), "");
    EXPECT_EQ(fs::file_size(path), 0u);
    EXPECT_EQ(folder.names(), Names{"out.png"});
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
    fs::create_symlink("far/later", folder.path("dangling"));
    EXPECT_EQ(write(folder.path("dangling"), "made"), "");
    EXPECT_EQ(readFile(folder.path("far/later")), "made");
    fs::create_symlink("circle", folder.path("circle"));
    EXPECT_EQ(write(folder.path("circle"), "x"), "a symbolic link leads in a circle");
}

TEST(WriteFileAtomically, SaysPlainlyWhatIsWrong)
{
    const TemporaryFolder folder;
    writeFile(folder.path("file"), "kept");
    EXPECT_EQ(write(folder.path("none/out.png"), "x"), "no such folder");
    EXPECT_EQ(write(folder.path("file") + "/out.png", "x"), "no such folder");
    EXPECT_EQ(write(folder.path(), "x"), "is a folder");
    EXPECT_EQ(write(folder.path() + "/", "x"), "is a folder");
    EXPECT_EQ(write("", "x"), "this is not the name of a file");
    EXPECT_EQ(write(folder.path(std::string(300, 'n')), "x"), "the name is too long");
    EXPECT_EQ(folder.names(), Names{"file"});
}

TEST(WriteFileAtomically, RespectsPermissions)
{
    const TemporaryFolder folder;
    writeFile(folder.path("protected"), "kept");
    fs::permissions(folder.path("protected"), fs::perms(0444));
    fs::create_directory(folder.path("closed"));
    fs::permissions(folder.path(), fs::perms(0777));
    fs::permissions(folder.path("closed"), fs::perms(0555));
    const int failures = inChild([&] {
        if (::geteuid() == 0 && ::setuid(65534) != 0)
            return 100;
        return (write(folder.path("closed/out.png"), "x") != "permission denied") +
               (write(folder.path("protected"), "x") != "permission denied") +
               (write(folder.path("allowed"), "x") != "");
    });
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(readFile(folder.path("protected")), "kept");
    EXPECT_EQ(folder.names(), (Names{"allowed", "closed", "protected"}));
    EXPECT_TRUE(fs::is_empty(folder.path("closed")));
}

// As on a disk that fills up: the write stops in the middle, with a signal that would end the process.
TEST(WriteFileAtomically, LeavesEverythingAsItWasWhenTheDiskIsFull)
{
    const TemporaryFolder folder;
    writeFile(folder.path("out.png"), "kept");
    const int result = inChild([&] {
        constexpr rlimit kLimit{1 << 16, 1 << 16};
        if (::setrlimit(RLIMIT_FSIZE, &kLimit) != 0)
            return 100;
        const std::string large(1 << 20, 'x');
        return (write(folder.path("out.png"), large) != "the file is too large for the device") +
               (write(folder.path("new.png"), large).empty() ? 10 : 0) + (write(folder.path("small"), "fits") != "");
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(readFile(folder.path("out.png")), "kept");
    EXPECT_EQ(folder.names(), (Names{"out.png", "small"}));
    EXPECT_EQ(write("/dev/full", "x"), "no space left on the device");
}

TEST(WriteFileAtomically, WritesThroughPipes)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    std::string got;
    std::thread reader([&] { got = readFile(folder.path("pipe")); });
    EXPECT_EQ(write(folder.path("pipe"), "content"), "");
    reader.join();
    EXPECT_EQ(got, "content");
    EXPECT_TRUE(fs::is_fifo(folder.path("pipe")));
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
    EXPECT_EQ(writeNew(folder.path("none/file"), "x"), "no such folder");
    EXPECT_EQ(writeNew(folder.path() + "/", "x"), "is a folder");
    EXPECT_EQ(writeNew("", "x"), "this is not the name of a file");
    EXPECT_EQ(folder.names(), (Names{"dangling", "file", "folder"}));
}

TEST(WriteNewFile, OneOfManyProcessesGetsTheName)
{
    const TemporaryFolder folder;
    constexpr int kProcesses = 8;
    constexpr int kNames = 50;
    std::vector<pid_t> children;
    for (int child = 0; child < kProcesses; ++child) {
        const pid_t process = ::fork();
        if (process == 0) {
            int won = 0;
            for (int name = 0; name < kNames; ++name)
                won += writeNew(folder.path(std::to_string(name)), std::string(1000, 'x')) == "written";
            ::_exit(won);
        }
        children.push_back(process);
    }
    int won = 0;
    for (const pid_t process : children) {
        int status = 0;
        ::waitpid(process, &status, 0);
        ASSERT_TRUE(WIFEXITED(status));
        won += WEXITSTATUS(status);
    }
    EXPECT_EQ(won, kNames);
    EXPECT_EQ(folder.names().size(), std::size_t{kNames});
}

// The child writes again and again until its parent has seen a temporary file and interrupts it.
TEST(RemoveUnfinishedFiles, CleansUpFromASignalHandler)
{
    const TemporaryFolder folder;
    writeFile(folder.path("out.png"), "kept");
    const pid_t child = ::fork();
    if (child == 0) {
        std::signal(SIGINT, [](int) {
            removeUnfinishedFiles();
            ::_exit(42);
        });
        const std::string large(std::size_t{64} << 20, 'x');
        for (;;)
            if (!write(folder.path("out.png"), large).empty())
                ::_exit(1);
    }
    for (int i = 0; i < 5000 && folder.names().size() < 2; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    ::kill(child, SIGINT);
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 42);
    EXPECT_EQ(folder.names(), Names{"out.png"});
    const std::uintmax_t size = fs::file_size(folder.path("out.png"));
    EXPECT_TRUE(size == 4 || size == std::uintmax_t{64} << 20) << size; // the old file or a whole new one
}

} // namespace
} // namespace lamina::test
