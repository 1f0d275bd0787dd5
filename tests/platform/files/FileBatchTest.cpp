#include "ChildProcess.h"
#include "CommandRunner.h"

#include "platform/files/FileBatch.h"
#include "platform/files/FileReading.h"
#include "platform/files/FileSweeping_p.h"
#include "platform/files/FileWriting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

std::span<const std::uint8_t> bytesOf(const std::string& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// Of names 0, 1 ... those files that hold the text.
int filesWith(const TemporaryFolder& folder, const std::string& text, int count)
{
    int found = 0;
    for (int name = 0; name < count; ++name)
        found += readFile(folder.path(std::to_string(name))) == text;
    return found;
}

void makeFiles(const TemporaryFolder& folder, int count)
{
    for (int name = 0; name < count; ++name)
        writeFile(folder.path(std::to_string(name)), "old");
}

void writeFiles(const TemporaryFolder& folder, int count, FileBatch& batch)
{
    std::vector<std::jthread> writers(4);
    for (int first = 0; first < 4; ++first) {
        writers[static_cast<std::size_t>(first)] = std::jthread([&, first] {
            for (int name = first; name < count; name += 4)
                EXPECT_TRUE(batch.write(folder.path(std::to_string(name)), bytesOf("new")));
        });
    }
}

TEST(FileBatch, WhatReplacesWaitsAndWhatIsNewDoesNot)
{
    constexpr int kFiles = 520; // more than wait at once
    const TemporaryFolder folder;
    makeFiles(folder, kFiles + 1);
    FileBatch batch;
    writeFiles(folder, kFiles, batch);
    const int waiting = filesWith(folder, "old", kFiles);
    EXPECT_GT(waiting, 0);
    EXPECT_LT(waiting, kFiles);
    EXPECT_TRUE(batch.write(folder.path("first"), bytesOf("new")));
    EXPECT_EQ(readFile(folder.path("first")), "new");
    EXPECT_FALSE(batch.write(folder.path("none/file"), bytesOf("new")));
    const std::string last = folder.path(std::to_string(kFiles));
    EXPECT_TRUE(batch.write(last, bytesOf("new")));
    fs::remove(last);
    fs::create_directory(last);
    const std::vector<Error> failures = batch.finish();
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0].message(), last + ": is a folder");
    EXPECT_EQ(filesWith(folder, "new", kFiles), kFiles); // a file that fails concerns itself alone
    EXPECT_EQ(folder.names().size(), kFiles + 2u);
}

// Names that are one for a file system without capitals are found by the same means as these links.
TEST(FileBatch, NoFileTakesThePlaceOfAnotherOfTheBatch)
{
    const TemporaryFolder folder;
    writeFile(folder.path("there"), "old");
    fs::create_symlink("there", folder.path("to there"));
    fs::create_symlink("made", folder.path("to made"));
    fs::create_symlink("made", folder.path("to made too"));
    const std::pair<std::string, std::string> cases[] = {{"there", "to there"}, {"to made", "to made too"}};
    FileBatch batch;
    for (const auto& [first, second] : cases) {
        EXPECT_TRUE(batch.write(folder.path(first), bytesOf("older")));
        EXPECT_TRUE(batch.write(folder.path(first), bytesOf("new")));
        const Outcome refused = batch.write(folder.path(second), bytesOf("newer"));
        EXPECT_EQ(refused ? "" : refused.error().cause, "is the same file as " + folder.path(first));
    }
    EXPECT_TRUE(batch.finish().empty());
    EXPECT_EQ(readFile(folder.path("there")), "new");
    EXPECT_EQ(readFile(folder.path("made")), "new");
    // Another file that gets the number of one that is gone.
    fs::rename(folder.path("made"), folder.path("other"));
    EXPECT_TRUE(batch.write(folder.path("other"), bytesOf("newer")));
}

TEST(FileBatch, WhatWaitsLeavesDescriptorsToOthers)
{
    constexpr int kFiles = 60;
    const TemporaryFolder folder;
    for (int name = 0; name < kFiles; ++name) { // each in a folder of its own
        fs::create_directory(folder.path("in " + std::to_string(name)));
        fs::create_symlink("in " + std::to_string(name) + "/file", folder.path(std::to_string(name)));
    }
    makeFiles(folder, kFiles);
    const pid_t child = startChild([&] {
        const rlimit few{64, 64};
        ::setrlimit(RLIMIT_NOFILE, &few);
        FileBatch batch;
        int good = 0;
        for (int name = 0; name < kFiles; ++name)
            good += batch.write(folder.path(std::to_string(name)), bytesOf("new")) &&
                    openFileForReading(folder.path(std::to_string(name)));
        return good + static_cast<int>(batch.finish().size());
    });
    EXPECT_EQ(exitCodeOf(child), kFiles);
    EXPECT_EQ(filesWith(folder, "new", kFiles), kFiles);
}

// Several threads write while the signal comes, most files wait, and none may be made behind its handler's back.
TEST(FileBatch, LeavesNothingUnfinishedWhenInterrupted)
{
    constexpr int kFiles = 40;
    for (int run = 0; run < 20; ++run) {
        const TemporaryFolder folder;
        makeFiles(folder, kFiles);
        const auto before = std::signal(SIGTERM, [](int) {
            removeUnfinishedFiles();
            ::_exit(42);
        });
        const pid_t child = startChild([&] {
            for (;;) {
                FileBatch batch;
                writeFiles(folder, kFiles, batch);
            }
            return 0;
        });
        std::signal(SIGTERM, before);
        ::usleep(3'000 + 1'500 * static_cast<useconds_t>(run));
        ::kill(child, SIGTERM);
        EXPECT_EQ(exitCodeOf(child), 42);
        EXPECT_EQ(folder.names().size(), static_cast<std::size_t>(kFiles));
        EXPECT_EQ(filesWith(folder, "old", kFiles) + filesWith(folder, "new", kFiles), kFiles);
    }
}

void makeOld(const std::string& path)
{
    const timespec times[] = {{0, UTIME_NOW}, {::time(nullptr) - 25 * 3600, 0}};
    ::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW);
}

TEST(Sweeping, TakesOnlyWhatNobodyWritesAnyMore)
{
    const TemporaryFolder folder;
    const auto unfinished = [](char digit) { return "." + std::string(16, digit) + std::string(kUnfinishedSuffix); };
    const std::string shorter = "." + std::string(15, 'a') + std::string(kUnfinishedSuffix);
    for (const std::string& name : {shorter, unfinished('1'), unfinished('2'), unfinished('f')})
        writeFile(folder.path(name), "half");
    fs::create_symlink(shorter, folder.path(unfinished('0')));
    for (const std::string& name : {shorter, unfinished('0'), unfinished('2'), unfinished('f')})
        makeOld(folder.path(name));
    std::vector<std::string> kept{"new", shorter, unfinished('0'), unfinished('1')};
    if (::chown(folder.path(unfinished('2')).c_str(), 7, 7) == 0) // that of another user
        kept.push_back(unfinished('2'));
    EXPECT_TRUE(*writeNewFile(folder.path("new"), bytesOf("new")));
    std::sort(kept.begin(), kept.end());
    EXPECT_EQ(folder.names(), kept);
}

// As long as a library writes the file it is locked, however long that takes.
TEST(Sweeping, LeavesWhatIsBeingWritten)
{
    const TemporaryFolder folder;
    const FileDescriptor opened(::open(folder.path().c_str(), O_PATH | O_CLOEXEC));
    EXPECT_TRUE(writeFileAtomically(folder.path("film"), [&](const std::string& open) {
        writeFile(open, "slow");
        makeOld(folder.path(folder.names().front()));
        sweepUnfinishedFiles(opened.get());
        return success();
    }));
    EXPECT_EQ(readFile(folder.path("film")), "slow");
}

} // namespace
} // namespace lamina::test
