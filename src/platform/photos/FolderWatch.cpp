#include "platform/photos/FolderWatch_p.h"

#include "platform/base/Log.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>

namespace lamina {

namespace {

constexpr std::uint32_t kOfFolder = IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_MASK_ADD;
constexpr std::uint32_t kNames = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
/// Archives set the times of what they have written only after closing it.
constexpr std::uint32_t kContents = kNames | IN_CLOSE_WRITE | IN_ATTRIB;

/// What is read at a time; a steady stream is left to the next.
constexpr std::size_t kMostEvents = 20000;

} // namespace

bool WatchEvent::isOverflow() const
{
    return (mask & IN_Q_OVERFLOW) != 0;
}

bool WatchEvent::isOfFolder() const
{
    return (mask & IN_ISDIR) != 0;
}

bool WatchEvent::isEnd() const
{
    return (mask & IN_IGNORED) != 0;
}

FolderWatch::FolderWatch(std::size_t most)
    : m_descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    , m_most(most)
{
    if (m_descriptor.get() < 0)
        logWarning("folders can't be watched: " + std::string(std::strerror(errno)));
}

std::optional<int> FolderWatch::add(const std::string& path, Depth depth)
{
    const std::uint32_t mask = kOfFolder | (depth == Depth::Contents ? kContents : kNames);
    const int watch = inotify_add_watch(m_descriptor.get(), path.c_str(), mask);
    if (watch >= 0 && (m_watches.contains(watch) || m_watches.size() < m_most)) {
        m_watches.insert(watch);
        return watch;
    }
    if (watch >= 0)
        inotify_rm_watch(m_descriptor.get(), watch);
    if ((watch >= 0 || errno == ENOSPC) && !m_told) {
        m_told = true;
        logWarning("too few folders can be watched at once: changes in others are found later");
    }
    return {};
}

void FolderWatch::remove(int watch)
{
    if (m_watches.erase(watch) > 0)
        inotify_rm_watch(m_descriptor.get(), watch);
}

std::vector<WatchEvent> FolderWatch::read()
{
    std::vector<WatchEvent> events;
    alignas(inotify_event) std::array<char, 65536> buffer;
    ssize_t length = 0;
    while (events.size() < kMostEvents && (length = ::read(m_descriptor.get(), buffer.data(), buffer.size())) > 0) {
        for (const char* at = buffer.data(); at < buffer.data() + length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            events.push_back({event->wd, event->mask, event->len > 0 ? std::string(event->name) : std::string()});
            if (events.back().isEnd())
                m_watches.erase(event->wd);
            at += sizeof(inotify_event) + event->len;
        }
    }
    return events;
}

} // namespace lamina
