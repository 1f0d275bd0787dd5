#include "platform/files/UnfinishedFile_p.h"

#include "platform/files/FileWriting.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <random>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

/// The names of files being written, in memory that a signal handler may read: fixed places, each handed over by its
/// state.
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

/// Closes a descriptor; the error's number, or 0: some file systems tell only now that they are full.
int closed(int descriptor)
{
    return ::close(descriptor) != 0 && errno != EINTR ? errno : 0;
}

} // namespace

FileSizeSignalBlocker::FileSizeSignalBlocker()
{
    sigemptyset(&m_signal);
    sigaddset(&m_signal, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
}

FileSizeSignalBlocker::~FileSizeSignalBlocker()
{
    if (sigismember(&m_before, SIGXFSZ) == 0) {
        const timespec now{};
        sigtimedwait(&m_signal, nullptr, &now); // takes a pending one away
    }
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

int writeAll(int descriptor, std::span<const std::uint8_t> bytes)
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
    return error;
}

int writeAndClose(int descriptor, std::span<const std::uint8_t> bytes, Durability durability)
{
    int error = writeAll(descriptor, bytes);
    if (durability == Durability::OnDevice && error == 0 && ::fdatasync(descriptor) != 0)
        error = errno;
    const int closing = closed(descriptor);
    return error != 0 ? error : closing;
}

UnfinishedFile::UnfinishedFile(const std::filesystem::path& target, mode_t mode)
{
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        char name[64];
        std::snprintf(name, sizeof name, ".%08x%08x%s", random(), random(), kUnfinishedSuffix.data());
        m_path = (target.parent_path() / name).string();
        m_place = UnfinishedFiles::enter(m_path);
        m_descriptor = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode);
        m_error = m_descriptor < 0 ? errno : 0;
        if (m_error != EEXIST)
            break;
        UnfinishedFiles::leave(std::exchange(m_place, -1));
    }
    m_exists = m_error == 0;
}

UnfinishedFile::~UnfinishedFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    if (m_exists)
        ::unlink(m_path.c_str());
    UnfinishedFiles::leave(m_place);
}

void UnfinishedFile::take(const struct stat& status)
{
    if (m_error != 0)
        return;
    // The owner is kept where we may; without that the permissions are what counts.
    if (::fchown(m_descriptor, status.st_uid, status.st_gid) != 0)
        errno = 0;
    if (::fchmod(m_descriptor, status.st_mode & 07777) != 0)
        m_error = errno;
}

void UnfinishedFile::write(std::span<const std::uint8_t> bytes, Durability durability)
{
    if (m_error == 0)
        m_error = writeAndClose(std::exchange(m_descriptor, -1), bytes, durability);
}

void UnfinishedFile::append(std::span<const std::uint8_t> bytes)
{
    if (m_error == 0)
        m_error = writeAll(m_descriptor, bytes);
}

std::string UnfinishedFile::descriptorPath() const
{
    return "/proc/self/fd/" + std::to_string(m_descriptor);
}

void UnfinishedFile::close()
{
    if (m_error == 0)
        m_error = closed(std::exchange(m_descriptor, -1));
}

void UnfinishedFile::replace(const std::filesystem::path& target)
{
    if (m_error != 0)
        return;
    if (::rename(m_path.c_str(), target.c_str()) != 0)
        m_error = errno;
    else
        m_exists = false;
}

bool UnfinishedFile::claim(const std::filesystem::path& target)
{
    if (m_error != 0)
        return false;
    if (::renameat2(AT_FDCWD, m_path.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
        m_exists = false;
        return true;
    }
    // Network file systems refuse the flag but know links; sticks know the flag but no links. Our own name for the file
    // goes with this object.
    const bool unknown = errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
    if (unknown && ::link(m_path.c_str(), target.c_str()) == 0)
        return true;
    m_error = errno == EEXIST ? 0 : errno;
    return false;
}

void UnfinishedFile::removeAll()
{
    UnfinishedFiles::removeAll();
}

} // namespace lamina
