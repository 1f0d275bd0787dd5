#include "platform/host/system/PortalRequest.h"

#include "platform/host/system/BackgroundWork.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QRandomGenerator>

#include <utility>

namespace lamina {

namespace {

using Kind = PortalAnswer::Kind;

const QString kRequestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString kResponseSignal = QStringLiteral("Response");
constexpr uint kTaken = 0;
constexpr uint kCancelledByUser = 1;

/// Not to be guessed, so that nobody else on the bus can answer in the portal's place.
QString newToken()
{
    return QStringLiteral("lamina_%1").arg(QRandomGenerator::system()->generate64(), 16, 16, QLatin1Char('0'));
}

/// Where the request of a token will stand, known before it is made: an answer can come before the call has returned.
QString requestPath(const QDBusConnection& bus, const QString& token)
{
    QString sender = bus.baseService().mid(1); // ":1.42"
    return kPortalPath + QStringLiteral("/request/") + sender.replace(QLatin1Char('.'), QLatin1Char('_')) +
           QLatin1Char('/') + token;
}

void closeRequest(const QDBusConnection& bus, const QString& path)
{
    bus.send(QDBusMessage::createMethodCall(kPortalService, path, kRequestInterface, QStringLiteral("Close")));
}

PortalAnswer answerOf(const QDBusMessage& response)
{
    if (response.signature() != QLatin1String("ua{sv}"))
        return {Kind::Unavailable, {}, {"", "the desktop’s answer makes no sense"}};
    const QList<QVariant> arguments = response.arguments();
    const uint code = arguments.at(0).toUInt();
    if (code == kCancelledByUser)
        return {Kind::Cancelled, {}, {}};
    if (code != kTaken)
        return {Kind::Unavailable, {}, {"", "the desktop’s dialog ended by itself"}};
    return {Kind::Taken, qdbus_cast<QVariantMap>(arguments.at(1)), {}};
}

} // namespace

PortalRequest::PortalRequest(BusConnector connector, QObject* parent)
    : QObject(parent)
    , m_connector(std::move(connector))
{
}

PortalRequest::~PortalRequest()
{
    cancel();
}

void PortalRequest::ask(Prepare prepare, Completion completion)
{
    struct Prepared {
        QDBusConnection bus;
        Result<PortalCall> call;
    };
    cancel();
    m_completion = std::move(completion);
    inBackground<Prepared>(
        busQueue(), this,
        [connector = m_connector, prepare = std::move(prepare)] {
            return Prepared{connector(), prepare()};
        },
        [this, number = m_question](Prepared prepared) {
            if (number != m_question)
                return;
            if (prepared.call)
                send(prepared.bus, *std::move(prepared.call));
            else
                finish({Kind::Failed, {}, prepared.call.error()});
        });
}

void PortalRequest::cancel()
{
    ++m_question;
    m_completion = {};
    for (const QString& path : std::as_const(m_requestPaths))
        closeRequest(*m_bus, path);
    letGo();
}

void PortalRequest::send(const QDBusConnection& bus, PortalCall call)
{
    if (!bus.isConnected()) {
        giveUp("there is no session bus");
        return;
    }
    m_bus = bus;
    const QString token = newToken();
    watchForLoss();
    listenTo(requestPath(bus, token));

    QDBusMessage message = QDBusMessage::createMethodCall(
        kPortalService, kPortalPath, QStringLiteral("org.freedesktop.portal.") + call.portal, call.method);
    call.options.insert(QStringLiteral("handle_token"), token);
    message.setArguments(call.arguments << call.options);
    // Not a child: a question that is taken back early is closed when its handle comes, whatever has become of this
    // object.
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, m_patience));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [self = QPointer(this), bus, number = m_question, watcher] {
                         const QDBusPendingReply<QDBusObjectPath> handle = *watcher;
                         if (self && self->m_question == number)
                             self->requestMade(*watcher);
                         else if (handle.isValid())
                             closeRequest(bus, handle.value().path());
                         watcher->deleteLater();
                     });
}

void PortalRequest::listenTo(const QString& requestPath)
{
    m_requestPaths.append(requestPath);
    m_bus->connect(kPortalService, requestPath, kRequestInterface, kResponseSignal, this,
                   SLOT(responded(QDBusMessage)));
}

void PortalRequest::watchForLoss()
{
    m_watcher = std::make_unique<QDBusServiceWatcher>(kPortalService, *m_bus);
    QObject::connect(m_watcher.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
                     [this](const QString&, const QString& oldOwner) {
                         if (!oldOwner.isEmpty()) // otherwise it has only just been started
                             giveUp("the desktop’s dialog went away");
                     });
    m_bus->connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                   QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this, SLOT(busLost()));
}

void PortalRequest::requestMade(QDBusPendingCallWatcher& call)
{
    if (!m_bus) // answered already
        return;
    const QDBusPendingReply<QDBusObjectPath> handle = call;
    if (!handle.isValid()) {
        // Should it come to ask after all, nobody would hear the answer.
        closeRequest(*m_bus, m_requestPaths.first());
        giveUp(handle.error().message().toStdString());
    } else if (!m_requestPaths.contains(handle.value().path())) {
        // Portals of before 2018 chose the name of the request themselves.
        listenTo(handle.value().path());
    }
}

void PortalRequest::responded(const QDBusMessage& response)
{
    // An answer to an earlier question may still have been on its way.
    if (m_requestPaths.contains(response.path()))
        finish(answerOf(response));
}

void PortalRequest::busLost()
{
    giveUp("the session bus went away");
}

void PortalRequest::letGo()
{
    for (const QString& path : std::as_const(m_requestPaths))
        m_bus->disconnect(kPortalService, path, kRequestInterface, kResponseSignal, this,
                          SLOT(responded(QDBusMessage)));
    if (m_bus)
        m_bus->disconnect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                          QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                          SLOT(busLost()));
    m_requestPaths.clear();
    if (m_watcher) {
        m_watcher->disconnect(this);
        m_watcher.release()->deleteLater(); // it may be the one that is telling
    }
    m_bus.reset();
}

void PortalRequest::giveUp(const std::string& cause)
{
    finish({Kind::Unavailable, {}, {"", cause}});
}

void PortalRequest::finish(PortalAnswer answer)
{
    letGo();
    // On a turn of its own, where nothing of this object is at work: the completion may destroy it.
    DispatchQueue::main().async([self = QPointer(this), number = m_question, answer = std::move(answer)] {
        if (!self || self->m_question != number)
            return;
        ++self->m_question;
        if (const Completion completion = std::exchange(self->m_completion, {}))
            completion(answer);
    });
}

} // namespace lamina
