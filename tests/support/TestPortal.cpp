#include "TestPortal.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QFile>

namespace lamina::test {

namespace {

const QString kName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");

QString newConnectionName()
{
    static int count = 0;
    return QStringLiteral("test portal %1").arg(++count);
}

/// What is asked by dialogs, and how.
const QMap<QString, QString> kDialogs{
    {QStringLiteral("FileChooser.OpenFile"), QStringLiteral("ssa{sv}")},
    {QStringLiteral("FileChooser.SaveFile"), QStringLiteral("ssa{sv}")},
    {QStringLiteral("OpenURI.OpenFile"), QStringLiteral("sha{sv}")},
    {QStringLiteral("Email.ComposeEmail"), QStringLiteral("sa{sv}")},
    {QStringLiteral("Print.PreparePrint"), QStringLiteral("ssa{sv}a{sv}a{sv}")},
    {QStringLiteral("Print.Print"), QStringLiteral("ssha{sv}")},
    {QStringLiteral("Camera.AccessCamera"), QStringLiteral("a{sv}")},
};

QByteArray contentsOf(const QDBusUnixFileDescriptor& descriptor)
{
    QFile file;
    return file.open(descriptor.fileDescriptor(), QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Empty when they don't have the documented type.
std::vector<TestPortal::Filter> filtersIn(const QVariant& option)
{
    std::vector<TestPortal::Filter> filters;
    const auto argument = option.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("a(sa(us))"))
        return filters;
    argument.beginArray();
    while (!argument.atEnd()) {
        QString name;
        TestPortal::Filter filter;
        argument.beginStructure();
        argument >> name;
        argument.beginArray();
        while (!argument.atEnd()) {
            uint kind = 0;
            QString pattern;
            argument.beginStructure();
            argument >> kind >> pattern;
            argument.endStructure();
            filter.rules.emplace_back(kind, pattern.toStdString());
        }
        argument.endArray();
        argument.endStructure();
        filter.name = name.toStdString();
        filters.push_back(std::move(filter));
    }
    argument.endArray();
    return filters;
}

} // namespace

TestPortal::TestPortal(const QString& address)
    : m_connectionName(newConnectionName())
    , m_bus(address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_connectionName)
                              : QDBusConnection::connectToBus(address, m_connectionName))
{
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    m_running = m_bus.registerVirtualObject(kPath, this, QDBusConnection::SubPath) && m_bus.registerService(kName);
}

TestPortal::~TestPortal()
{
    vanish();
}

void TestPortal::vanish()
{
    if (std::exchange(m_running, false))
        m_bus.unregisterObject(kPath, QDBusConnection::UnregisterTree);
    m_bus = QDBusConnection(QString()); // the connection ends with the last that holds it
    QDBusConnection::disconnectFromBus(m_connectionName);
}

QString TestPortal::introspect(const QString&) const
{
    return {};
}

bool TestPortal::handleMessage(const QDBusMessage& message, const QDBusConnection&)
{
    const QString call = message.interface() + QLatin1Char('.') + message.member();
    const QString name = call.mid(QStringLiteral("org.freedesktop.portal.").size());
    if (kDialogs.contains(name))
        ask(name, message);
    else if (name == QLatin1String("Camera.OpenPipeWireRemote"))
        openRemote(message);
    else if (message.member() == QLatin1String("Get") && message.arguments().last() == QLatin1String("IsCameraPresent"))
        tellPresence(message);
    else if (call == QLatin1String("org.freedesktop.DBus.Properties.Get"))
        m_bus.send(message.createReply(QVariant::fromValue(QDBusVariant(3u))));
    else if (call == QLatin1String("org.freedesktop.FileManager1.ShowItems")) {
        m_shownItems += message.arguments().at(0).toStringList();
        m_bus.send(message.createReply());
    } else if (call == QLatin1String("org.freedesktop.portal.Settings.ReadAll"))
        readAll(message);
    else if (call == QLatin1String("org.freedesktop.portal.Request.Close"))
        m_closed.append(message.path());
    else
        return false;
    return true;
}

void TestPortal::serveFileManager()
{
    m_running = m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/FileManager1"), this) &&
                m_bus.registerService(QStringLiteral("org.freedesktop.FileManager1"));
}

void TestPortal::ask(const QString& name, const QDBusMessage& call)
{
    if (m_manner == Manner::Refuses || call.signature() != kDialogs[name]) {
        m_bus.send(call.createErrorReply(QDBusError::Failed, QStringLiteral("there is no display")));
        return;
    }
    const QVariantList arguments = call.arguments();
    Question question;
    question.call = name;
    question.parentWindow = arguments.at(0).toString();
    if (call.signature().startsWith(QLatin1String("ss")))
        question.title = arguments.at(1).toString();
    for (const QVariant& argument : arguments)
        if (argument.canConvert<QDBusUnixFileDescriptor>())
            question.file = contentsOf(argument.value<QDBusUnixFileDescriptor>());
    question.options = qdbus_cast<QVariantMap>(arguments.last());
    question.filters = filtersIn(question.options.take(QStringLiteral("filters")));
    for (const auto& attachment :
         qdbus_cast<QList<QDBusUnixFileDescriptor>>(question.options.take(QStringLiteral("attachment_fds"))))
        question.file += contentsOf(attachment);
    question.sender = call.service();
    const QString token = m_manner == Manner::NamesItself
                              ? QStringLiteral("t%1").arg(m_questions.size())
                              : question.options.value(QStringLiteral("handle_token")).toString();
    const QString sender = call.service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    question.handle = kPath + QStringLiteral("/request/") + sender + QLatin1Char('/') + token;
    m_questions.push_back(question);
    m_lastCall = call;

    if (m_manner == Manner::AnswersFirst && m_answer)
        respond(m_answer->first, m_answer->second);
    if (m_manner == Manner::Hesitates)
        return;
    giveHandle();
    if (m_manner != Manner::AnswersFirst && m_answer)
        respond(m_answer->first, m_answer->second);
}

void TestPortal::giveHandle()
{
    m_bus.send(m_lastCall.createReply(QVariant::fromValue(QDBusObjectPath(m_questions.back().handle))));
}

void TestPortal::respondWith(const QVariantList& arguments)
{
    QDBusMessage signal = QDBusMessage::createTargetedSignal(m_questions.back().sender, m_questions.back().handle,
                                                             QStringLiteral("org.freedesktop.portal.Request"),
                                                             QStringLiteral("Response"));
    signal.setArguments(arguments);
    m_bus.send(signal);
}

void TestPortal::readAll(const QDBusMessage& call)
{
    ++m_settingsReads;
    QMap<QString, QVariantMap> wanted;
    for (const QString& group : call.arguments().at(0).toStringList())
        if (m_settings.contains(group))
            wanted.insert(group, m_settings.value(group));
    m_bus.send(call.createReply(QVariant::fromValue(wanted)));
}

void TestPortal::setCamera(bool present, int remote)
{
    m_remote = remote;
    if (std::exchange(m_cameraPresent, present) == present)
        return;
    QDBusMessage signal = QDBusMessage::createSignal(kPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                                                     QStringLiteral("PropertiesChanged"));
    signal << QStringLiteral("org.freedesktop.portal.Camera")
           << QVariantMap{{QStringLiteral("IsCameraPresent"), present}} << QStringList();
    m_bus.send(signal);
}

void TestPortal::tellPresence(const QDBusMessage& call)
{
    m_bus.send(m_cameraPresent ? call.createReply(QVariant::fromValue(QDBusVariant(*m_cameraPresent)))
                               : call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("no such interface")));
}

void TestPortal::openRemote(const QDBusMessage& call)
{
    ++m_remotesOpened;
    m_bus.send(m_remote < 0 ? call.createErrorReply(QDBusError::AccessDenied, QStringLiteral("not allowed"))
                            : call.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(m_remote))));
}

void TestPortal::setSetting(const QString& group, const QString& key, const QVariant& value)
{
    m_settings[group].insert(key, value);
    QDBusMessage signal = QDBusMessage::createSignal(kPath, QStringLiteral("org.freedesktop.portal.Settings"),
                                                     QStringLiteral("SettingChanged"));
    signal << group << key << QVariant::fromValue(QDBusVariant(value));
    m_bus.send(signal);
}

} // namespace lamina::test
