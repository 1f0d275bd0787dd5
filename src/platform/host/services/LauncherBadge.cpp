#include "platform/host/services/LauncherBadge.h"

#include <QDBusMessage>
#include <QVariantMap>

#include <utility>

namespace lamina {

namespace {

const QString kInterface = QStringLiteral("com.canonical.Unity.LauncherEntry");
const QString kPath = QStringLiteral("/org/lamina/lamina/LauncherEntry");

/// Which entry it is, and what stands on it.
QVariantList contents(int number)
{
    return {QStringLiteral("application://org.lamina.lamina.desktop"),
            QVariantMap{{QStringLiteral("count"), static_cast<qlonglong>(number)},
                        {QStringLiteral("count-visible"), number > 0}}};
}

} // namespace

/// Answers launchers that start later.
class LauncherBadge::Entry : public QDBusVirtualObject {
public:
    explicit Entry(const int& number)
        : m_number(number)
    {
    }

    QString introspect(const QString&) const override
    {
        return QStringLiteral("<interface name=\"%1\">"
                              "<method name=\"Query\"><arg type=\"s\" direction=\"out\"/>"
                              "<arg type=\"a{sv}\" direction=\"out\"/></method>"
                              "<signal name=\"Update\"><arg type=\"s\"/><arg type=\"a{sv}\"/></signal>"
                              "</interface>")
            .arg(kInterface);
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (message.member() != QLatin1String("Query") || !message.signature().isEmpty() ||
            (message.interface() != kInterface && !message.interface().isEmpty()))
            return false;
        connection.send(message.createReply(contents(m_number)));
        return true;
    }

private:
    const int& m_number;
};

LauncherBadge::LauncherBadge(BusConnector connector, QObject* parent)
    : QObject(parent)
    , m_bus(std::move(connector))
{
}

LauncherBadge::~LauncherBadge() = default; // an object that goes leaves the bus by itself

void LauncherBadge::setNumber(int number)
{
    m_number = number;
    if (m_number != m_told)
        m_bus.with([this](QDBusConnection& bus) { tell(bus); });
}

void LauncherBadge::tell(QDBusConnection& bus)
{
    if (m_number == std::exchange(m_told, m_number))
        return;
    if (!m_entry) {
        m_entry = std::make_unique<Entry>(m_number);
        bus.registerVirtualObject(kPath, m_entry.get());
    }
    QDBusMessage update = QDBusMessage::createSignal(kPath, kInterface, QStringLiteral("Update"));
    update.setArguments(contents(m_number));
    bus.send(update);
}

} // namespace lamina
