#include "platform/files/UnfinishedFile_p.h"

#include "platform/files/FileAttributes_p.h"
#include "platform/files/FileSizeSignal.h"
#include "platform/files/UnfinishedNames_p.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <random>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

std::string randomName()
{
    std::random_device random;
    std::array<char, UnfinishedNames::kLongestName> name{};
    std::snprintf(name.data(), name.size(), ".%08x%08x%s", random(), random(), kUnfinishedSuffix.data());
    return name.data();
}

/// "holiday.recording-1a2b3c4d.mp4" for "holiday.mp4": a player knows it by its end.
std::string recordingName(const std::string& target)
{
    constexpr std::size_t kLongestStem = 200; // names have 255 bytes at most
    const std::size_t stop = target.rfind('.');
    const bool hasExtension = stop != std::string::npos && stop > 0 && target.size() - stop < 16;
    std::string stem = target.substr(0, hasExtension ? stop : target.size());
    if (stem.size() > kLongestStem) {
        std::size_t end = kLongestStem;
        while (end > 0 && (static_cast<unsigned char>(stem[end]) & 0xC0) == 0x80) // within a letter
            --end;
        stem.resize(end);
    }
    std::array<char, 32> middle{};
    std::snprintf(middle.data(), middle.size(), ".recording-%08x", std::random_device()());
    return stem + middle.data() + (hasExtension ? target.substr(stop) : std::string());
}

/// Of a folder that may not be read nothing can be asked for; some file systems don't know the question.
int syncFolder(int folder)
{
    const FileDescriptor readable(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return readable.get() < 0 || ::fsync(readable.get()) == 0 || errno == EINVAL ? 0 : errno;
}

} // namespace

SignalBlocker::SignalBlocker()
{
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &m_before);
}

SignalBlocker::~SignalBlocker()
{
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

int closingError(int descriptor)
{
    const int second = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    return second < 0 || (::close(second) != 0 && errno != EINTR) ? errno : 0;
}

UnfinishedFile::UnfinishedFile(OpenFolder folder, mode_t mode, std::string keptFor)
    : m_folder(std::move(folder))
    , m_keptFor(std::move(keptFor))
{
    constexpr int kMostAttempts = 100;
    m_error = EEXIST;
    for (int i = 0; i < kMostAttempts && m_error == EEXIST; ++i)
        make(mode);
    m_exists = m_error == 0;
    if (m_exists)
        ::flock(m_file.get(), LOCK_EX | LOCK_NB); // where there are no locks nothing is swept either
}

void UnfinishedFile::make(mode_t mode)
{
    m_name = m_keptFor.empty() ? randomName() : recordingName(m_keptFor);
    // A signal's handler that removes what is unfinished waits for other threads to come through this, but not for its
    // own.
    const SignalBlocker blocker;
    m_error = EMFILE;
    if (m_keptFor.empty() && !enterName())
        return UnfinishedNames::waitForEnd();
    m_file = FileDescriptor(
        ::openat(m_folder->get(), m_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
    m_error = m_file.get() < 0 ? errno : 0;
    UnfinishedNames::tried(m_place);
    if (m_error != 0)
        UnfinishedNames::leave(std::exchange(m_place, -1));
}

bool UnfinishedFile::enterName()
{
    m_place = UnfinishedNames::enter(m_folder->get(), m_name.c_str());
    return m_place >= 0;
}

UnfinishedFile::~UnfinishedFile()
{
    if (m_exists)
        ::unlinkat(m_folder->get(), m_name.c_str(), 0);
    UnfinishedNames::leave(m_place);
}

void UnfinishedFile::take(const FileDescriptor& former)
{
    if (m_error == 0)
        m_error = takeAttributes(m_file.get(), former.get());
}

void UnfinishedFile::append(std::span<const std::uint8_t> bytes)
{
    if (m_error == 0)
        m_error = writeAll(m_file.get(), bytes);
}

std::string UnfinishedFile::descriptorPath() const
{
    return "/proc/self/fd/" + std::to_string(m_file.get());
}

void UnfinishedFile::finish(Durability durability)
{
    if (m_error == 0 && durability == Durability::OnDevice && ::fdatasync(m_file.get()) != 0)
        m_error = errno;
    if (m_error == 0)
        m_error = closingError(m_file.get());
}

void UnfinishedFile::replace(const std::string& name, Durability durability)
{
    if (m_error != 0)
        return;
    const int folder = m_folder->get();
    if (::renameat(folder, m_name.c_str(), folder, name.c_str()) != 0) {
        m_error = errno;
        return UnfinishedNames::waitForEnd();
    }
    m_exists = false;
    if (durability == Durability::OnDevice)
        m_error = syncFolder(folder);
}

bool UnfinishedFile::claim(const std::string& name)
{
    if (m_error != 0)
        return false;
    const int folder = m_folder->get();
    if (::renameat2(folder, m_name.c_str(), folder, name.c_str(), RENAME_NOREPLACE) == 0) {
        m_exists = false;
        return true;
    }
    // Network file systems refuse the flag but know links; sticks know the flag but no links. Our own name for the file
    // goes with this object.
    const bool unknown = errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
    if (unknown && ::linkat(folder, m_name.c_str(), folder, name.c_str(), 0) == 0)
        return true;
    m_error = errno == EEXIST ? 0 : errno;
    if (m_error != 0)
        UnfinishedNames::waitForEnd();
    return false;
}

} // namespace lamina
