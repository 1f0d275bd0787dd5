#include "platform/files/FileSweeping_p.h"

#include "platform/files/FileReading.h"
#include "platform/files/FileWriting.h"

#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace lamina {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kReadingTime{5};
constexpr int kLookAtClockEvery = 256; // names
constexpr std::size_t kMostNames = 1000;
/// Only after many kills is there so much to be removed.
constexpr std::chrono::milliseconds kRemovingTime{250};

struct Close {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

bool isLeftOver(const struct stat& status)
{
    const std::time_t oldest = std::time(nullptr) - std::chrono::seconds(kLeftoversKept).count();
    return S_ISREG(status.st_mode) && status.st_uid == ::geteuid() && status.st_mtim.tv_sec < oldest;
}

/// Names that are ours, as many as are met in the time.
std::vector<std::string> unfinishedNamesIn(DIR* folder)
{
    const Clock::time_point end = Clock::now() + kReadingTime;
    std::vector<std::string> names;
    int seen = 0;
    while (const dirent* entry = ::readdir(folder)) {
        if (isUnfinishedName(entry->d_name))
            names.emplace_back(entry->d_name);
        if (names.size() == kMostNames || (++seen % kLookAtClockEvery == 0 && Clock::now() >= end))
            break;
    }
    return names;
}

/// Whoever writes it holds its lock; on a file system without locks nobody can tell, and it stays.
void sweep(int folder, const char* name)
{
    struct stat status {};
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0 || !isLeftOver(status))
        return;
    const FileDescriptor file(::openat(folder, name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file.get() >= 0 && ::fstat(file.get(), &status) == 0 && isLeftOver(status) &&
        ::flock(file.get(), LOCK_EX | LOCK_NB) == 0)
        ::unlinkat(folder, name, 0);
}

} // namespace

bool isUnfinishedName(std::string_view name)
{
    constexpr std::size_t kDigits = 16;
    return name.size() == 1 + kDigits + kUnfinishedSuffix.size() && name.front() == '.' &&
           name.ends_with(kUnfinishedSuffix) && name.find_first_not_of("0123456789abcdef", 1) == 1 + kDigits;
}

void sweepUnfinishedFiles(int folder)
{
    const int descriptor = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    const std::unique_ptr<DIR, Close> opened(::fdopendir(descriptor));
    if (!opened) {
        ::close(descriptor);
        return;
    }
    const std::vector<std::string> names = unfinishedNamesIn(opened.get());
    const Clock::time_point end = Clock::now() + kRemovingTime;
    for (auto name = names.begin(); name != names.end() && Clock::now() < end; ++name)
        sweep(folder, name->c_str());
}

} // namespace lamina
