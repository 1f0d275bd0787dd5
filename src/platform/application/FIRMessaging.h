#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

class FIRMessaging;

/// Who hears of the address under which messages reach this installation.
class FIRMessagingDelegate {
public:
    virtual ~FIRMessagingDelegate() = default;
    /// There is one, or another one than before.
    virtual void messaging(FIRMessaging& messaging, const std::string& didReceiveRegistrationToken) = 0;
};

/// What brings messages from a server on this system. Installed by whoever knows it; without one none come, silently.
/// Main thread; nothing here may wait.
class MessagingService {
public:
    virtual ~MessagingService() = default;
    /// Reads what it has to know to serve; the first of the calls.
    virtual void configure() = 0;
    /// Registers this installation. The answer comes on a later turn of the main queue, through `UIApplication`'s
    /// `didRegisterForRemoteNotificationsWithDeviceToken` or `didFailToRegisterForRemoteNotificationsWithError`; where
    /// there is nobody to register with, none comes.
    virtual void registerForRemoteNotifications() = 0;
    /// The token that the system has given, back from the application.
    virtual void setAPNSToken(const std::vector<std::uint8_t>& token) = 0;
};

/// The service configuration as a whole. Main thread.
class FIRApp {
public:
    /// Configures the installed messaging service; nothing without one.
    static void configure();
};

/// The client of the messaging service. One a process, never destroyed. Main thread.
class FIRMessaging {
public:
    /// The process's own.
    static FIRMessaging& messaging();

    void setDelegate(std::weak_ptr<FIRMessagingDelegate> delegate) { m_delegate = std::move(delegate); }
    std::shared_ptr<FIRMessagingDelegate> delegate() const { return m_delegate.lock(); }
    /// Hands the system's token to the service.
    void setAPNSToken(const std::vector<std::uint8_t>& token);

    /// The service has an address for this installation: the delegate is told.
    void didReceiveRegistrationToken(const std::string& token);

    /// Null: none. It must outlive its installation.
    void setService(MessagingService* service) { m_service = service; }
    MessagingService* service() const { return m_service; }

private:
    FIRMessaging() = default;

    std::weak_ptr<FIRMessagingDelegate> m_delegate;
    MessagingService* m_service = nullptr;
};

} // namespace lamina
