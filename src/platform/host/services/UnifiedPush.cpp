#include "platform/host/services/UnifiedPush.h"

#include "platform/application/UIApplication.h"
#include "platform/application/UNNotification.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/base/ShownText.h"
#include "platform/host/services/UnifiedPushMessage.h"
#include "platform/host/system/BackgroundWork.h"
#include "platform/host/system/BusCalls.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <mutex>
#include <span>
#include <utility>

namespace lamina {

namespace {

const QString kDistributorPath = QStringLiteral("/org/unifiedpush/Distributor");
const QString kDistributorInterface = QStringLiteral("org.unifiedpush.Distributor2");

/// Of calls whose sender is being looked up: more at once are refused.
constexpr int kMostAsking = 128;
/// What others wrote, as far as it goes into our errors and lines, in bytes.
constexpr std::size_t kLongestCause = 200;
constexpr qsizetype kLongestEndpoint = 2048;
/// Milliseconds in which the bus itself has to answer.
constexpr int kBusPatience = 1000;

QDBusMessage ownerQuestion(const QString& name)
{
    return busCall(QStringLiteral("GetNameOwner"), {name});
}

/// The one value of the answer; empty where there is none, or another one.
template <class Value>
Value valueOf(const QDBusMessage& reply)
{
    const QVariantList values = reply.type() == QDBusMessage::ReplyMessage ? reply.arguments() : QVariantList();
    return values.size() == 1 && values.first().metaType() == QMetaType::fromType<Value>()
               ? values.first().value<Value>()
               : Value();
}

/// Waits.
template <class Value>
Value asked(const QDBusConnection& bus, const QDBusMessage& call)
{
    return valueOf<Value>(bus.call(call, QDBus::Block, kBusPatience));
}

/// Those that run and those that the bus can start, by name. Waits.
QStringList distributorsOn(const QDBusConnection& bus)
{
    QStringList names = asked<QStringList>(bus, busCall(QStringLiteral("ListNames")));
    if (names.isEmpty()) // its own is always there: it doesn't answer
        return names;
    names += asked<QStringList>(bus, busCall(QStringLiteral("ListActivatableNames")));
    QStringList distributors;
    std::ranges::copy_if(names, std::back_inserter(distributors),
                         [](const QString& name) { return name.startsWith(QLatin1String(kDistributorNames)); });
    distributors.sort();
    return distributors;
}

/// Empty: it has registered us.
std::string refusalIn(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage)
        return (reply.errorMessage().isEmpty() ? reply.errorName() : reply.errorMessage()).toStdString();
    const auto answer = reply.signature() == QLatin1String("a{sv}")
                            ? qdbus_cast<QVariantMap>(reply.arguments().constFirst())
                            : QVariantMap();
    const QString success = answer.value(QStringLiteral("success")).toString();
    if (success == QLatin1String("REGISTRATION_SUCCEEDED"))
        return {};
    if (success != QLatin1String("REGISTRATION_FAILED"))
        return "its answer makes no sense";
    const QString reason = answer.value(QStringLiteral("reason")).toString();
    return reason.isEmpty() ? "it gives no reason" : reason.toStdString();
}

} // namespace

/// The object while it lives, and where it is to be found. Guarded by its mutex.
struct UnifiedPush::Exported {
    std::mutex mutex;
    UnifiedPushConnector* object;
    std::optional<QDBusConnection> bus;

    explicit Exported(UnifiedPushConnector* exported)
        : object(exported)
    {
    }
    std::optional<QDBusConnection> presentBus()
    {
        const std::scoped_lock lock(mutex);
        return bus;
    }
};

/// What a look at the bus has led to.
struct UnifiedPush::Found {
    std::optional<QDBusConnection> bus;
    std::optional<UnifiedPushRegistration> registration; ///< to be made; nothing: with nobody
    bool isKept = false;                                 ///< of the last time

    static Found on(const std::optional<QDBusConnection>& bus, KeptRegistration& kept)
    {
        Found found{bus, {}};
        if (!bus || asked<QString>(*bus, ownerQuestion(kApplicationBusName)) != bus->baseService())
            return found;
        const QStringList distributors = distributorsOn(*bus);
        if (distributors.isEmpty())
            return found;
        found.registration = kept.current();
        found.isKept =
            found.registration && distributors.contains(QString::fromStdString(found.registration->distributor));
        if (!found.isKept) {
            found.registration = newRegistration(distributors.constFirst().toStdString());
            if (const Outcome outcome = kept.set(found.registration); !outcome)
                logWarning("the registration for messages can't be kept: " + outcome.error().message());
        }
        return found;
    }
};

UnifiedPush::UnifiedPush(QObject* parent)
    : QObject(parent)
    , m_kept(std::make_shared<KeptRegistration>())
    , m_object([this](const Call& call, const QDBusConnection& bus) { called(call, bus); })
    , m_exported(std::make_shared<Exported>(&m_object))
{
    FIRMessaging::messaging().setService(this);
}

UnifiedPush::~UnifiedPush()
{
    FIRMessaging::messaging().setService(nullptr);
    {
        const std::scoped_lock lock(m_exported->mutex);
        m_exported->object = nullptr;
    }
    if (m_looking)
        awaitBusQueue();
}

SessionName::Export UnifiedPush::exporter() const
{
    return [exported = m_exported, kept = m_kept](QDBusConnection& bus) {
        (void)kept->current(); // read here, so that the first message needn't wait for the disk
        const std::scoped_lock lock(exported->mutex);
        if (!exported->object)
            return;
        bus.registerVirtualObject(UnifiedPushConnector::kPath, exported->object);
        exported->bus = bus;
    };
}

void UnifiedPush::begin()
{
    if (std::exchange(m_begun, Begun::Whole) != Begun::Whole && m_wanted)
        lookForDistributor();
}

void UnifiedPush::beginForMessages()
{
    if (m_begun != Begun::No)
        return;
    m_begun = Begun::ForMessages;
    if (m_wanted)
        lookForDistributor();
}

void UnifiedPush::registerForRemoteNotifications()
{
    m_wanted = true;
    if (m_begun != Begun::No)
        lookForDistributor();
}

void UnifiedPush::lookForDistributor()
{
    if (m_looking || m_registering)
        return;
    m_looking = true;
    inBackground<Found>(
        busQueue(), this, [exported = m_exported, kept = m_kept] { return Found::on(exported->presentBus(), *kept); },
        [this](const Found& result) {
            m_looking = false;
            found(result);
        });
}

void UnifiedPush::found(const Found& found)
{
    if (!found.registration)
        return;
    if (found.isKept && m_begun == Begun::ForMessages)
        return tellRegistered();
    m_bus = found.bus;
    const QString distributor = QString::fromStdString(found.registration->distributor);
    // First watch, then call: a return in between would be missed.
    m_watcher =
        std::make_unique<QDBusServiceWatcher>(distributor, *found.bus, QDBusServiceWatcher::WatchForRegistration);
    connect(m_watcher.get(), &QDBusServiceWatcher::serviceRegistered, this, &UnifiedPush::distributorReturned);
    sendRegistration(true);
}

void UnifiedPush::sendRegistration(bool startsDistributor)
{
    const auto registration = m_kept->current();
    if (!registration)
        return;
    m_registering = true;
    QDBusMessage call =
        QDBusMessage::createMethodCall(QString::fromStdString(registration->distributor), kDistributorPath,
                                       kDistributorInterface, QStringLiteral("Register"));
    call << QVariantMap{{QStringLiteral("service"), kApplicationBusName},
                        {QStringLiteral("token"), QString::fromStdString(registration->token)},
                        {QStringLiteral("description"), QStringLiteral("Lamina")}};
    call.setAutoStartService(startsDistributor);
    callBus(*m_bus, call, this, [this](const QDBusMessage& reply) { answered(reply); });
}

void UnifiedPush::answered(const QDBusMessage& reply)
{
    m_registering = false;
    const std::string refusal = refusalIn(reply);
    if (refusal.empty())
        return tellRegistered();
    if (const auto registration = m_kept->current())
        UIApplication::shared().didFailToRegisterForRemoteNotifications(
            {registration->distributor, beginningOf(shownText(refusal), kLongestCause)});
}

/// Nothing where the distributor has taken its word back meanwhile.
void UnifiedPush::tellRegistered()
{
    if (const auto registration = m_kept->current())
        UIApplication::shared().didRegisterForRemoteNotifications(
            {registration->token.begin(), registration->token.end()});
}

void UnifiedPush::distributorReturned()
{
    // One that our own call has started is just answering. It is not started here: one that ends at every call would be
    // started for ever.
    if (!m_registering && m_returns.allows())
        sendRegistration(false);
}

void UnifiedPush::called(const Call& call, const QDBusConnection& bus)
{
    const auto registration = m_kept->current();
    if (!registration || call.token.toStdString() != registration->token || m_asking >= kMostAsking)
        return UnifiedPushConnector::refuse(call, bus);
    emit wasCalled();
    if (call.message.size() > static_cast<qsizetype>(kMostMessageBytes)) { // it isn't held until its sender is known
        UnifiedPushConnector::accept(call, bus);
        return takeMessage(call);
    }
    ++m_asking;
    callBus(bus, ownerQuestion(QString::fromStdString(registration->distributor)), this,
            [this, call, bus](const QDBusMessage& reply) {
                --m_asking;
                const QString owner = valueOf<QString>(reply);
                if (owner.isEmpty() || owner != call.origin.service())
                    return UnifiedPushConnector::refuse(call, bus);
                UnifiedPushConnector::accept(call, bus);
                obey(call);
            });
}

void UnifiedPush::obey(const Call& call)
{
    const auto registration = m_kept->current();
    if (!registration || call.token.toStdString() != registration->token) // taken back by a call before this one
        return;
    switch (call.method) {
    case UnifiedPushConnector::Method::MessageCame:
        return takeMessage(call);
    case UnifiedPushConnector::Method::EndpointCame:
        return takeEndpoint(call.endpoint);
    case UnifiedPushConnector::Method::RegistrationEnded:
        return forgetRegistration();
    }
}

void UnifiedPush::takeMessage(const Call& call)
{
    const std::string identifier =
        call.identifier.isEmpty() ? newRegistration({}).token : call.identifier.toStdString();
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(call.message.constData());
    Result<UNNotification> message =
        notificationOfMessage(std::span(bytes, static_cast<std::size_t>(call.message.size())), identifier);
    if (!message)
        return drop(message.error().cause);
    const bool isShown = !message->title.empty() || !message->body.empty();
    if (isShown && !m_shown.allows()) {
        message->title.clear();
        message->body.clear();
        drop("too many in a minute; only its badge counts");
    }
    UIApplication::shared().didReceiveRemoteNotification(*message);
}

void UnifiedPush::takeEndpoint(const QString& endpoint)
{
    const QUrl url(endpoint, QUrl::StrictMode);
    const bool isAddress = endpoint.size() <= kLongestEndpoint && url.isValid() && !url.host().isEmpty() &&
                           (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"));
    if (!isAddress)
        return drop("the address that it gives is none");
    if (endpoint != std::exchange(m_endpoint, endpoint))
        FIRMessaging::messaging().didReceiveRegistrationToken(endpoint.toStdString());
}

void UnifiedPush::forgetRegistration()
{
    m_watcher.reset();
    m_endpoint.clear();
    m_kept->setForNow(std::nullopt);
    busQueue().async([kept = m_kept] { (void)kept->set(std::nullopt); });
}

/// A line in the log, and one more for many.
void UnifiedPush::drop(const std::string& cause)
{
    ++m_dropped;
    if (!m_lines.allows())
        return;
    const int others = std::exchange(m_dropped, 0) - 1;
    logWarning("a message from the distributor: " + beginningOf(cause, kLongestCause) +
               (others > 0 ? " (and " + std::to_string(others) + " before it)" : ""));
}

} // namespace lamina
