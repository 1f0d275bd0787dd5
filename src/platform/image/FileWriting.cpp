#include "platform/image/PictureEncoding.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

constexpr const char* kSuffix = ".lamina-unfinished";

/// The names of files being written, in memory that a signal handler may read: fixed places, each handed over by its state.
class UnfinishedFiles {
public:
    /// The place taken; nothing when all are (the file is then written all the same) or the name is too long.
    static int enter(const std::string& path)
    {
        for (std::size_t i = 0; path.size() < PATH_MAX && i < s_slots.size(); ++i) {
            int expected = kFree;
            if (!s_slots[i].state.compare_exchange_strong(expected, kFilling))
                continue;
            std::memcpy(s_slots[i].path, path.c_str(), path.size() + 1);
            s_slots[i].state.store(kNamed);
            return static_cast<int>(i);
        }
        return -1;
    }
    static void leave(int place)
    {
        if (place >= 0)
            s_slots[static_cast<std::size_t>(place)].state.store(kFree);
    }
    static void removeAll()
    {
        for (Slot& slot : s_slots)
            if (slot.state.load() == kNamed)
                ::unlink(slot.path);
    }

private:
    enum State : int { kFree, kFilling, kNamed };
    struct Slot {
        std::atomic<int> state{kFree};
        char path[PATH_MAX];
    };
    static_assert(std::atomic<int>::is_always_lock_free); // or the handler could wait for what it interrupted
    static std::array<Slot, 16> s_slots;
};

std::array<UnfinishedFiles::Slot, 16> UnfinishedFiles::s_slots;

std::string writeFailure(int error)
{
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return "no such folder";
    case EACCES:
    case EPERM:
        return "permission denied";
    case EISDIR:
        return "is a folder";
    case ENOSPC:
    case EDQUOT:
        return "no space left on the device";
    case EFBIG:
        return "the file is too large for the device";
    case EROFS:
        return "the device can only be read";
    case ELOOP:
        return "a symbolic link leads in a circle";
    case ENAMETOOLONG:
        return "the name is too long";
    default:
        return std::strerror(error);
    }
}

/// Growing past the process's limit for files raises a signal that ends it; held back, the write fails in the ordinary way.
class FileSizeSignalBlocker {
public:
    FileSizeSignalBlocker()
    {
        sigemptyset(&m_signal);
        sigaddset(&m_signal, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
    }
    ~FileSizeSignalBlocker()
    {
        if (sigismember(&m_before, SIGXFSZ) == 0) {
            const timespec now{};
            sigtimedwait(&m_signal, nullptr, &now); // takes a pending one away
        }
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    FileSizeSignalBlocker(const FileSizeSignalBlocker&) = delete;
    FileSizeSignalBlocker& operator=(const FileSizeSignalBlocker&) = delete;

private:
    sigset_t m_signal;
    sigset_t m_before;
};

/// Writes everything and closes the descriptor; the error's number, or 0.
int writeAndClose(int descriptor, std::span<const std::uint8_t> bytes)
{
    const FileSizeSignalBlocker blocker;
    int error = 0;
    while (!bytes.empty() && error == 0) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            error = errno;
    }
    if (::close(descriptor) != 0 && error == 0 && errno != EINTR) // some file systems tell only now that they are full
        error = errno;
    return error;
}

/// The file that a path means once its symbolic links are followed; it need not exist. Nothing on a circle.
std::optional<std::filesystem::path> followLinks(std::filesystem::path path)
{
    constexpr int kMostLinks = 40;
    for (int i = 0; i < kMostLinks; ++i) {
        std::error_code error;
        const std::filesystem::path next = std::filesystem::read_symlink(path, error);
        if (error)
            return path;
        path = path.parent_path() / next; // an absolute one replaces it all
    }
    return std::nullopt;
}

/// A temporary file in the folder of its target, gone with this object unless it has taken the target's place.
class UnfinishedFile {
public:
    explicit UnfinishedFile(const std::filesystem::path& target)
    {
        std::random_device random;
        for (int attempt = 0; attempt < 100; ++attempt) {
            char name[64];
            std::snprintf(name, sizeof name, ".%08x%08x%s", random(), random(), kSuffix);
            m_path = (target.parent_path() / name).string();
            m_place = UnfinishedFiles::enter(m_path);
            m_descriptor = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666);
            m_error = m_descriptor < 0 ? errno : 0;
            if (m_error != EEXIST)
                break;
            UnfinishedFiles::leave(std::exchange(m_place, -1));
        }
        m_exists = m_error == 0;
    }
    ~UnfinishedFile()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        if (m_exists)
            ::unlink(m_path.c_str());
        UnfinishedFiles::leave(m_place);
    }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    /// Each step gives the error's number, or 0; the first that fails is kept.
    void take(const struct stat& status)
    {
        if (m_error != 0)
            return;
        // The owner is kept where we may; without that the permissions are what counts.
        if (::fchown(m_descriptor, status.st_uid, status.st_gid) != 0)
            errno = 0;
        if (::fchmod(m_descriptor, status.st_mode & 07777) != 0)
            m_error = errno;
    }
    void write(std::span<const std::uint8_t> bytes)
    {
        if (m_error == 0)
            m_error = writeAndClose(std::exchange(m_descriptor, -1), bytes);
    }
    void replace(const std::filesystem::path& target)
    {
        if (m_error != 0)
            return;
        if (::rename(m_path.c_str(), target.c_str()) != 0)
            m_error = errno;
        else
            m_exists = false;
    }
    int error() const { return m_error; }

private:
    std::string m_path;
    int m_descriptor = -1;
    int m_place = -1;
    int m_error = 0;
    bool m_exists = false;
};

/// Pipes and devices have nothing to be replaced.
int writeThrough(const std::filesystem::path& target, std::span<const std::uint8_t> bytes)
{
    const int descriptor = ::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    return descriptor < 0 ? errno : writeAndClose(descriptor, bytes);
}

int replaceFile(const std::filesystem::path& target, const struct stat* existing, std::span<const std::uint8_t> bytes)
{
    // Renaming would get past the protection of a file that may not be written.
    if (existing && ::access(target.c_str(), W_OK) != 0)
        return errno;
    UnfinishedFile file(target);
    if (existing)
        file.take(*existing);
    file.write(bytes);
    file.replace(target);
    return file.error();
}

} // namespace

Outcome writeFileAtomically(const std::string& path, std::span<const std::uint8_t> bytes)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        return Error{path, "not a file name"};
    const std::optional<std::filesystem::path> target = followLinks(path);
    if (!target)
        return Error{path, writeFailure(ELOOP)};
    struct stat status {};
    const bool exists = ::stat(target->c_str(), &status) == 0;
    int error = 0;
    if ((exists && S_ISDIR(status.st_mode)) || !target->has_filename())
        error = EISDIR;
    else if (exists && !S_ISREG(status.st_mode))
        error = writeThrough(*target, bytes);
    else
        error = replaceFile(*target, exists ? &status : nullptr, bytes);
    if (error != 0)
        return Error{path, writeFailure(error)};
    return std::monostate();
}

void removeUnfinishedFiles()
{
    const int error = errno;
    UnfinishedFiles::removeAll();
    errno = error;
}

} // namespace lamina
