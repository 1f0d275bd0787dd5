#include "platform/host/services/SessionName.h"

#include "platform/host/system/BackgroundWork.h"
#include "platform/host/system/BusCalls.h"

#include <QByteArray>
#include <QDBusMessage>
#include <QFile>

#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

namespace lamina {

namespace {

constexpr unsigned kDoNotQueue = 4;
constexpr int kPrimaryOwner = 1;
constexpr int kAlreadyOwner = 4;
constexpr int kExists = 3;
/// Milliseconds.
constexpr int kAskingTime = 5000;
constexpr int kReleasingTime = 1000;

SessionName::State requestName(const QDBusConnection& bus, const QString& name)
{
    const QDBusMessage call = busCall(QStringLiteral("RequestName"), {name, kDoNotQueue});
    const QDBusMessage reply = bus.call(call, QDBus::Block, kAskingTime);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 1)
        return SessionName::State::NoBus;
    switch (reply.arguments().constFirst().toInt()) {
    case kPrimaryOwner:
    case kAlreadyOwner:
        return SessionName::State::Owned;
    case kExists:
        return SessionName::State::Taken;
    default:
        return SessionName::State::NoBus;
    }
}

void releaseName(const QDBusConnection& bus, const QString& name)
{
    bus.call(busCall(QStringLiteral("ReleaseName"), {name}), QDBus::Block, kReleasingTime);
}

/// Where the session bus listens; empty: nowhere.
QString sessionBusAddress()
{
    if (const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"); !address.isEmpty())
        return address;
    const QByteArray path = qgetenv("XDG_RUNTIME_DIR") + "/bus";
    if (path.startsWith('/') && path.size() > 4 && QFile::exists(QFile::decodeName(path)))
        return QStringLiteral("unix:path=") + QString::fromLatin1(path.toPercentEncoding("/", "~"));
    return {};
}

} // namespace

/// Guarded by its mutex.
struct SessionName::Asked {
    mutable std::mutex mutex;
    std::condition_variable settled;
    State state = State::Asking;
    std::optional<QDBusConnection> bus;
    std::vector<Export> exports; ///< not run yet
    bool isOver = false;

    /// False when it is over.
    bool runExports(QDBusConnection& connection)
    {
        std::vector<Export> due;
        {
            const std::scoped_lock lock(mutex);
            due = std::exchange(exports, {});
        }
        for (const Export& objects : due)
            objects(connection); // may take its time, for which nobody waits
        const std::scoped_lock lock(mutex);
        return !isOver;
    }
    void settle(State now, const QDBusConnection& connection)
    {
        {
            const std::scoped_lock lock(mutex);
            state = now;
            if (now != State::NoBus)
                bus = connection;
        }
        settled.notify_all();
    }
    /// Whether the name, if it is ours, is to be given back now; then it counts as another's.
    bool letGo()
    {
        const std::scoped_lock lock(mutex);
        if (!isOver || state != State::Owned)
            return false;
        state = State::Taken;
        return true;
    }
};

BusConnector ownSessionBus()
{
    return [address = sessionBusAddress()] {
        const QString name = QStringLiteral("lamina");
        return address.isEmpty() ? QDBusConnection(name) : QDBusConnection::connectToBus(address, name);
    };
}

SessionName::SessionName(BusConnector connector, QString name)
    : m_connector(std::move(connector))
    , m_name(std::move(name))
    , m_asked(std::make_shared<Asked>())
{
}

SessionName::~SessionName()
{
    if (!m_begun)
        return;
    release();
    if (state() == State::Asking)
        awaitBusQueue();
}

void SessionName::addExport(Export objects)
{
    {
        const std::scoped_lock lock(m_asked->mutex);
        m_asked->exports.push_back(std::move(objects));
    }
    if (!m_begun)
        return;
    busQueue().async([asked = m_asked] {
        if (std::optional<QDBusConnection> bus = asked->bus) // set on this queue
            asked->runExports(*bus);
    });
}

void SessionName::begin()
{
    if (std::exchange(m_begun, true))
        return;
    busQueue().async([asked = m_asked, connector = m_connector, name = m_name] {
        QDBusConnection bus = connector();
        const bool goesOn = bus.isConnected() && asked->runExports(bus);
        asked->settle(goesOn ? requestName(bus, name) : State::NoBus, bus);
        if (asked->letGo()) // nobody has waited for it
            releaseName(bus, name);
    });
}

SessionName::State SessionName::waitFor(std::chrono::milliseconds time) const
{
    std::unique_lock lock(m_asked->mutex);
    m_asked->settled.wait_for(lock, time, [this] { return m_asked->state != State::Asking; });
    return m_asked->state;
}

std::optional<QDBusConnection> SessionName::connection() const
{
    const std::scoped_lock lock(m_asked->mutex);
    return m_asked->bus;
}

void SessionName::release()
{
    {
        const std::scoped_lock lock(m_asked->mutex);
        m_asked->isOver = true;
        m_asked->exports.clear();
    }
    if (m_asked->letGo())
        releaseName(*m_asked->bus, m_name);
}

} // namespace lamina
