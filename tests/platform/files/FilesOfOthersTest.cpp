#include "ChildProcess.h"
#include "CommandRunner.h"

#include "platform/files/FileReading.h"
#include "platform/files/FileWriting.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kOther = 65534;

struct stat statusOf(const std::string& path)
{
    struct stat status {};
    ::stat(path.c_str(), &status);
    return status;
}

/// Writes "new" and gives what the file was before it had a byte; mode 0 where it could not be written.
struct stat replace(const std::string& path)
{
    struct stat empty {};
    const Outcome written = writeFileAtomically(path, [&empty](const std::string& open) {
        empty = statusOf(open);
        writeFile(open, "new");
        return success();
    });
    empty.st_mode = written ? empty.st_mode : 0;
    return empty;
}

/// An access list as the system keeps it: the owner, one more user, the group, the mask and the others.
using AccessList = std::array<std::uint16_t, 22>;
AccessList listWith(std::uint16_t user, std::uint16_t permissions)
{
    return {2, 0,      1,      6,    0xffff, 0xffff, 2,      permissions, user, 0,      4,
            0, 0xffff, 0xffff, 0x10, 7,      0xffff, 0xffff, 0x20,        0,    0xffff, 0xffff};
}

struct Former {
    uid_t owner;
    gid_t group;
    mode_t mode;
    uid_t writer;
    mode_t modeAfter;
};

// With the other user as writer a file of the first one is replaced, which neither can be given back.
TEST(FilesOfOthers, AReplacementCanBeReadByNobodyMoreFromItsFirstByte)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs to be two users";
    for (const Former& f :
         {Former{kOther, 7, 0600, 0, 0600}, Former{0, 0, 04755, 0, 0755}, Former{kOther, 0, 0640, kOther, 0600},
          Former{0, kOther, 0660, kOther, 0660}, Former{0, 0, 0666, kOther, 0666}, Former{0, 0, 0606, kOther, 0600},
          Former{0, 0, 0646, kOther, 0644}}) {
        SCOPED_TRACE(f.mode);
        const TemporaryFolder folder;
        fs::permissions(folder.path(), fs::perms(0777));
        const std::string path = folder.path("file");
        writeFile(path, "old");
        ASSERT_EQ(::chown(path.c_str(), f.owner, f.group), 0);
        ASSERT_EQ(::chmod(path.c_str(), f.mode), 0);
        const pid_t child = startChild([&] {
            become(f.writer);
            const struct stat empty = replace(path);
            return empty.st_uid == (f.writer == 0 ? f.owner : kOther) && empty.st_size == 0 &&
                   empty.st_gid == (f.writer == 0 ? f.group : kOther) && (empty.st_mode & 07777) == f.modeAfter;
        });
        EXPECT_EQ(exitCodeOf(child), 1);
        EXPECT_EQ(readFile(path), "new");
    }
}

TEST(FilesOfOthers, AReplacementKeepsListsAndTagsButTakesNoneFromItsFolder)
{
    const TemporaryFolder folder;
    for (const char* name : {"shared", "plain"})
        writeFile(folder.path(name), "old");
    fs::permissions(folder.path("plain"), fs::perms(0640));
    const AccessList shared = listWith(7, 4);
    const AccessList ofFolder = listWith(8, 6);
    if (::setxattr(folder.path("shared").c_str(), "system.posix_acl_access", shared.data(), sizeof shared, 0) != 0 ||
        ::setxattr(folder.path().c_str(), "system.posix_acl_default", ofFolder.data(), sizeof ofFolder, 0) != 0 ||
        ::setxattr(folder.path("shared").c_str(), "user.tag", "sea", 3, 0) != 0)
        GTEST_SKIP() << "no access lists here";
    for (const char* name : {"shared", "plain"})
        EXPECT_EQ(replace(folder.path(name)).st_size, 0);
    AccessList kept{};
    EXPECT_EQ(::getxattr(folder.path("shared").c_str(), "system.posix_acl_access", kept.data(), sizeof kept),
              static_cast<ssize_t>(sizeof kept));
    EXPECT_EQ(kept, shared);
    std::array<char, 4> tag{};
    EXPECT_EQ(::getxattr(folder.path("shared").c_str(), "user.tag", tag.data(), tag.size()), 3);
    EXPECT_EQ(::getxattr(folder.path("plain").c_str(), "system.posix_acl_access", nullptr, 0), -1);
    EXPECT_EQ(statusOf(folder.path("plain")).st_mode & 07777, 0640u);
}

TEST(FilesOfOthers, ATagThatTheWriterMayNotReadIsNotKeptWithoutItsValue)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs to be two users";
    const TemporaryFolder folder;
    fs::permissions(folder.path(), fs::perms(0777));
    const std::string path = folder.path("blind");
    writeFile(path, "old");
    if (::setxattr(path.c_str(), "user.tag", "sea", 3, 0) != 0)
        GTEST_SKIP() << "no tags here";
    ASSERT_EQ(::chown(path.c_str(), kOther, kOther), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0222), 0);
    const pid_t child = startChild([&] {
        become(kOther);
        return replace(path).st_mode != 0;
    });
    EXPECT_EQ(exitCodeOf(child), 1);
    EXPECT_EQ(::getxattr(path.c_str(), "user.tag", nullptr, 0), -1);
}

/// What a shell says that sends something there.
std::string causeOfOpening(const std::string& path)
{
    const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    return file.get() >= 0 ? "" : errno == EACCES ? "permission denied" : "another";
}

std::string causeOfWriting(const std::string& path)
{
    const std::array<std::uint8_t, 3> bytes{'n', 'e', 'w'};
    const Outcome outcome = writeFileAtomically(path, bytes);
    return outcome ? "" : outcome.error().cause;
}

// Where the system protects links (fs.protected_symlinks) it refuses those of the first user, and we with it.
TEST(FilesOfOthers, InAFolderOfEverybodysTheSystemsWordHolds)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs to be two users";
    const TemporaryFolder folder;
    fs::create_directories(folder.path("sticky"));
    fs::create_directories(folder.path("own"));
    for (const auto& [name, mode] : {std::pair{"", 0755}, {"sticky", 01777}, {"own", 0777}})
        fs::permissions(folder.path(name), fs::perms(mode));
    for (const char* name : {"own/file", "sticky/file"}) {
        writeFile(folder.path(name), "old");
        fs::permissions(folder.path(name), fs::perms(0666));
    }
    ASSERT_EQ(::chown(folder.path("sticky").c_str(), 7, 7), 0); // nor does the link belong to the folder's owner
    fs::create_symlink(folder.path("own/file"), folder.path("sticky/link"));
    fs::create_symlink(folder.path("own/made"), folder.path("sticky/dangling"));
    const pid_t child = startChild([&] {
        become(kOther);
        int different = causeOfWriting(folder.path("sticky/file")) != "permission denied"; // whose name is not ours
        for (const char* name : {"sticky/link", "sticky/dangling"})
            different += causeOfWriting(folder.path(name)) != causeOfOpening(folder.path(name));
        return different;
    });
    EXPECT_EQ(exitCodeOf(child), 0);
    EXPECT_EQ(readFile(folder.path("sticky/file")), "old");
    EXPECT_EQ(fs::exists(folder.path("own/made")), readFile(folder.path("own/file")) == "new");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path("sticky")), {}), 3);
}

TEST(FilesOfOthers, LinksLeadWhereTheSystemSays)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.path("far"));
    const std::string longest(255, 'n');
    fs::create_symlink("far", folder.path("door"));
    fs::create_symlink("../" + longest, folder.path("far/second"));
    fs::create_symlink("door/second", folder.path("first"));
    EXPECT_EQ(causeOfWriting(folder.path("first")), "");
    EXPECT_EQ(readFile(folder.path(longest)), "new");
    EXPECT_EQ(statusOf(folder.path(longest)).st_mode & 0777, statusOf(folder.path("far")).st_mode & 0666);
    EXPECT_EQ(causeOfWriting(folder.path("door")), "is a folder");
    const FileDescriptor nameless(::memfd_create("picture", 0));
    const std::string inMemory = "/proc/self/fd/" + std::to_string(nameless.get());
    writeFile(inMemory, "longer than new");
    EXPECT_EQ(causeOfWriting(inMemory), "");
    EXPECT_EQ(readFile(inMemory), "new");
}

// Somebody swaps the folder for a link while the file is being written.
TEST(FilesOfOthers, TheFolderIsTheOneThatWasFound)
{
    const TemporaryFolder folder;
    for (const std::string name : {"mine", "precious"}) {
        fs::create_directory(folder.path(name));
        writeFile(folder.path(name + "/file"), "old");
    }
    EXPECT_TRUE(writeFileAtomically(folder.path("mine/file"), [&](const std::string& open) {
        fs::rename(folder.path("mine"), folder.path("moved"));
        fs::create_symlink("precious", folder.path("mine"));
        writeFile(open, "new");
        return success();
    }));
    EXPECT_EQ(readFile(folder.path("moved/file")), "new");
    EXPECT_EQ(readFile(folder.path("precious/file")), "old");
}

/// As sandboxes do that don't know it.
bool forbidStatx()
{
    std::array<sock_filter, 4> filter{{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                                       BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_statx, 0, 1),
                                       BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
                                       BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)}};
    const sock_fprog program{filter.size(), filter.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

TEST(FilesOfOthers, FoldersThatNobodyTellsApartAreNotTaken)
{
    const TemporaryFolder folder;
    for (const char* name : {"a", "b"})
        fs::create_directory(folder.path(name));
    const pid_t child = startChild([&] {
        if (!forbidStatx())
            return 0;
        const Outcome written = writeFileAtomically(folder.path("a/file"), [&](const std::string& open) {
            writeFile(open, "a");
            return causeOfWriting(folder.path("b/file")).empty() ? success() : Outcome(Error{}); // "a" is open
        });
        return written ? 1 : 2;
    });
    const int end = exitCodeOf(child);
    if (end == 0)
        GTEST_SKIP() << "no filters of system calls here";
    EXPECT_EQ(end, 1);
    EXPECT_EQ(readFile(folder.path("a/file")), "a");
    EXPECT_EQ(readFile(folder.path("b/file")), "new");
}

} // namespace
} // namespace lamina::test
