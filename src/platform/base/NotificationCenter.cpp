#include "platform/base/NotificationCenter.h"

#include "platform/base/Log.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <utility>
#include <vector>

namespace lamina {

struct NotificationEntry {
    std::string name;
    const void* sender;
    NotificationCenter::Handler handler;
    std::atomic<bool> registered{true};

    bool wants(const Notification& n) const { return name == n.name && (!sender || sender == n.sender); }
};

struct NotificationRegistry {
    std::mutex mutex;
    std::vector<std::shared_ptr<NotificationEntry>> entries;

    std::vector<std::shared_ptr<NotificationEntry>> observersOf(const Notification& notification)
    {
        std::vector<std::shared_ptr<NotificationEntry>> found;
        const std::lock_guard lock(mutex);
        for (const auto& entry : entries) {
            if (entry->wants(notification))
                found.push_back(entry);
        }
        return found;
    }
};

NotificationObserver& NotificationObserver::operator=(NotificationObserver&& other) noexcept
{
    NotificationObserver former;
    former.m_registry = std::exchange(m_registry, std::exchange(other.m_registry, {}));
    former.m_entry = std::exchange(m_entry, std::exchange(other.m_entry, {}));
    return *this;
}

void NotificationObserver::remove()
{
    const auto entry = std::exchange(m_entry, nullptr);
    if (!entry)
        return;
    entry->registered = false;
    if (const auto registry = m_registry.lock()) {
        const std::lock_guard lock(registry->mutex);
        std::erase(registry->entries, entry);
    }
}

NotificationCenter::NotificationCenter()
    : m_registry(std::make_shared<NotificationRegistry>())
{
}

NotificationCenter::~NotificationCenter() = default;

NotificationCenter& NotificationCenter::defaultCenter()
{
    static NotificationCenter* const center = new NotificationCenter;
    return *center;
}

NotificationObserver NotificationCenter::addObserver(std::string name, Handler handler, const void* sender)
{
    NotificationObserver observer;
    observer.m_registry = m_registry;
    observer.m_entry = std::make_shared<NotificationEntry>();
    observer.m_entry->name = std::move(name);
    observer.m_entry->sender = sender;
    observer.m_entry->handler = std::move(handler);
    const std::lock_guard lock(m_registry->mutex);
    m_registry->entries.push_back(observer.m_entry);
    return observer;
}

void NotificationCenter::post(const Notification& notification) const
{
    for (const auto& entry : m_registry->observersOf(notification)) {
        if (!entry->registered)
            continue;
        try {
            entry->handler(notification);
        } catch (const std::exception& e) {
            logError("an observer of " + notification.name + " threw: " + e.what());
        } catch (...) {
            logError("an observer of " + notification.name + " threw something that is not an exception");
        }
    }
}

void NotificationCenter::post(std::string_view name, const void* sender, Notification::UserInfo userInfo) const
{
    post(Notification{std::string(name), sender, std::move(userInfo)});
}

} // namespace lamina
