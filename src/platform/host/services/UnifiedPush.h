#pragma once

#include "platform/application/FIRMessaging.h"
#include "platform/host/services/RateLimit.h"
#include "platform/host/services/SessionName.h"
#include "platform/host/services/UnifiedPushConnector.h"
#include "platform/host/services/UnifiedPushRegistration.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QDBusServiceWatcher;

namespace lamina {

/// Messages from a server by UnifiedPush, https://unifiedpush.org/developers/spec/dbus/: a distributor, a program of
/// the user's choice, holds the connection to the network and hands on what comes. This process opens none.
///
/// The distributor is the one of the last time; where that is not there any more the first by name. Without any nothing
/// happens, and one that comes later is met at the next start. One that goes away and comes back is registered with
/// again. Only the process that owns the application's name on the bus registers: the others would hear nothing.
///
/// What comes counts when it bears our token and the distributor itself has sent it. Of messages some are shown and the
/// rest of a flood only carry their badge; what is no message (`notificationOfMessage`) is dropped with a line in the
/// log. The address that servers need is told to `FIRMessaging`'s delegate and stays nowhere.
///
/// While it lives it is `FIRMessaging`'s service. Main thread, where nothing else is said.
class UnifiedPush : public QObject, public MessagingService {
    Q_OBJECT

public:
    explicit UnifiedPush(QObject* parent = nullptr);
    /// Waits for a look at the bus that is under way: Qt's own end must not overtake it.
    ~UnifiedPush() override;

    /// Puts the object that distributors call on the bus, by whose connection we register from then on; before, there
    /// is nobody to register with. For `SessionName::addExport`: a message that has started this process waits for the
    /// name. On the `busQueue`; it may be called when this is gone.
    SessionName::Export exporter() const;

    /// From now on registering may use the bus; before, it is only noted. The second time nothing happens.
    void begin();
    /// The same for a process that has been started for a message, and may leave soon: while the distributor of the
    /// last time is there, we are registered with it as we were. One that answers every registration with a late call
    /// would start us again and again. `begin` may follow.
    void beginForMessages();

    void configure() override {}
    void registerForRemoteNotifications() override;
    /// Nothing: it came from here, and the distributor has it.
    void setAPNSToken(const std::vector<std::uint8_t>&) override {}

    // How much comes through in a minute.
    static constexpr int kMostShown = 10;  ///< messages with something to show
    static constexpr int kMostLines = 3;   ///< in the log
    static constexpr int kMostReturns = 4; ///< of the distributor's

signals:
    /// The distributor, or somebody who knows what it knows, has called.
    void wasCalled();

private:
    struct Exported;
    struct Found;
    using Call = UnifiedPushConnector::Call;

    void lookForDistributor();
    void found(const Found& found);
    void sendRegistration(bool startsDistributor);
    void answered(const QDBusMessage& reply);
    void tellRegistered();
    void distributorReturned();
    void called(const Call& call, const QDBusConnection& bus);
    void obey(const Call& call);
    void takeMessage(const Call& call);
    void takeEndpoint(const QString& endpoint);
    void forgetRegistration();
    void drop(const std::string& cause);

    std::shared_ptr<KeptRegistration> m_kept; ///< shared with the bus's queue
    UnifiedPushConnector m_object;
    std::shared_ptr<Exported> m_exported; ///< shared with the bus's queue
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
    std::optional<QDBusConnection> m_bus; ///< once there is a distributor
    enum class Begun { No, ForMessages, Whole };
    Begun m_begun = Begun::No;
    bool m_wanted = false;
    bool m_looking = false;
    bool m_registering = false;
    int m_asking = 0; ///< calls whose sender is being looked up
    QString m_endpoint;
    int m_dropped = 0; ///< since the last line in the log
    RateLimit m_shown{kMostShown, 60};
    RateLimit m_lines{kMostLines, 60};
    RateLimit m_returns{kMostReturns, 60};
};

} // namespace lamina
