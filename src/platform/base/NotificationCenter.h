#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace lamina {

struct NotificationEntry;
struct NotificationRegistry;

/// What an observer is told.
struct Notification {
    using UserInfo = std::map<std::string, std::any, std::less<>>;

    std::string name;
    const void* sender = nullptr; ///< only its identity counts; null: nobody in particular
    UserInfo userInfo;
};

/// Keeps an observer registered for as long as it lives; movable. It may outlive the centre.
class NotificationObserver {
public:
    /// Of nothing.
    NotificationObserver() = default;
    ~NotificationObserver() { remove(); }
    NotificationObserver(NotificationObserver&& other) noexcept = default;
    NotificationObserver& operator=(NotificationObserver&& other) noexcept;

    /// The handler is not called any more, not even by a post that is under way on this thread; one on another thread
    /// may be inside it just then.
    void remove();

private:
    friend class NotificationCenter;
    std::weak_ptr<NotificationRegistry> m_registry;
    std::shared_ptr<NotificationEntry> m_entry;
};

/// Tells observers of events by name, one after another in the order they were registered, on the thread that posts.
/// All operations from any thread, and from inside handlers.
class NotificationCenter {
public:
    using Handler = std::function<void(const Notification&)>;

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    /// The one that the whole process shares. Never destroyed.
    static NotificationCenter& defaultCenter();

    /// Calls `handler` for every post of `name`, or with a `sender` only for its posts, until the result is destroyed.
    /// A post that is under way is not seen. An exception that leaves the handler is logged, and the next observer
    /// called.
    [[nodiscard]] NotificationObserver addObserver(std::string name, Handler handler, const void* sender = nullptr);

    /// Returns when every observer has been called.
    void post(const Notification& notification) const;
    /// The same, put together here.
    void post(std::string_view name, const void* sender = nullptr, Notification::UserInfo userInfo = {}) const;

private:
    std::shared_ptr<NotificationRegistry> m_registry;
};

} // namespace lamina
