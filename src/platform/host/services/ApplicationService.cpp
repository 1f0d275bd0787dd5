#include "platform/host/services/ApplicationService.h"

#include "platform/base/ShownText.h"
#include "platform/files/FileURL.h"
#include "platform/host/services/SessionName.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <optional>
#include <utility>

namespace lamina {

namespace {

const QString kPath = QStringLiteral("/org/lamina/lamina");
const QString kInterface = QStringLiteral("org.freedesktop.Application");
const QString kToken = QStringLiteral("activation-token");
const QString kStartupIdentifier = QStringLiteral("desktop-startup-id");
/// Our own: milliseconds of the clock below after which a caller waits no longer and does the thing itself.
const QString kDeadline = QStringLiteral("org.lamina.deadline");

/// Of requests for which there is no handler yet.
constexpr std::size_t kMostWaiting = 16;
/// Bytes of what is told of a file.
constexpr std::size_t kLongestName = 100;
/// Milliseconds beyond the deadline, for an answer that is on its way.
constexpr int kGrace = 250;

/// Of a clock that all processes share and that nobody sets.
std::int64_t sharedMilliseconds()
{
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

bool isToken(const std::string& text)
{
    return !text.empty() && text.size() <= std::size_t{kLongestActivationToken} &&
           std::ranges::all_of(text, [](char sign) { return sign > ' ' && sign <= '~'; });
}

std::string tokenOf(const QVariantMap& platformData)
{
    for (const QString& key : {kToken, kStartupIdentifier})
        if (const std::string token = platformData.value(key).toString().toStdString(); isToken(token))
            return token;
    return {};
}

bool isTooLate(const QVariantMap& platformData)
{
    bool isNumber = false;
    const qlonglong deadline = platformData.value(kDeadline).toLongLong(&isNumber);
    return isNumber && deadline < sharedMilliseconds();
}

bool isUsable(const std::string& path)
{
    return path.starts_with('/') && path.size() <= kLongestRequestedPath && path.find('\0') == std::string::npos;
}

/// Of files, those that are none of this device left out.
Result<ApplicationRequest> requestFor(const QStringList& uris)
{
    if (static_cast<std::size_t>(uris.size()) > kMostRequestedPhotos)
        return Error{{}, "too many files"};
    ApplicationRequest request;
    for (const QString& uri : uris) {
        const std::string text = uri.toStdString();
        Result<std::string> path = text.starts_with('/') ? Result<std::string>(text) : pathOfFileURL(text);
        if (path && isUsable(*path))
            request.photos.push_back(*std::move(path));
        else if (!request.leftOut)
            request.leftOut = path ? Error{beginningOf(*path, kLongestName), "this is no path"}
                                   : Error{beginningOf(path.error().subject, kLongestName), path.error().cause};
    }
    return request;
}

/// Empty where it is none of the kind that an action takes.
std::optional<QStringList> photosOf(const QVariantList& parameter)
{
    if (parameter.isEmpty())
        return QStringList();
    const bool isList =
        parameter.size() == 1 && parameter.constFirst().metaType() == QMetaType::fromType<QStringList>();
    return isList ? std::optional(parameter.constFirst().toStringList()) : std::nullopt;
}

QStringList urisOf(const std::vector<std::string>& paths)
{
    QStringList uris;
    for (const std::string& path : paths)
        uris.append(QString::fromStdString(fileURLOfPath(path)));
    return uris;
}

QDBusMessage callFor(const ApplicationRequest& request, std::int64_t deadline)
{
    QVariantMap platformData{{kDeadline, static_cast<qlonglong>(deadline)}};
    if (!request.activationToken.empty()) {
        platformData.insert(kToken, QString::fromStdString(request.activationToken));
        platformData.insert(kStartupIdentifier, QString::fromStdString(request.activationToken));
    }
    const auto call = [](const char* method) {
        return QDBusMessage::createMethodCall(kApplicationBusName, kPath, kInterface, QLatin1String(method));
    };
    const QStringList uris = urisOf(request.photos);
    if (!request.action.empty())
        return call("ActivateAction") << QString::fromStdString(request.action)
                                      << (uris.isEmpty() ? QVariantList() : QVariantList{uris}) << platformData;
    if (!uris.isEmpty())
        return call("Open") << uris << platformData;
    return call("Activate") << platformData;
}

} // namespace

ApplicationService::ApplicationService(QObject* parent)
    : QObject(parent)
{
}

void ApplicationService::exportOn(QDBusConnection& bus)
{
    bus.registerObject(kPath, this, QDBusConnection::ExportScriptableSlots);
}

void ApplicationService::setHandler(Handler handler)
{
    m_handler = std::move(handler);
    if (!m_handler)
        return;
    for (const ApplicationRequest& request : std::exchange(m_waiting, {}))
        (void)m_handler(request); // who asked has its answer already
}

void ApplicationService::Activate(const QVariantMap& platformData)
{
    take({}, platformData);
}

void ApplicationService::Open(const QStringList& uris, const QVariantMap& platformData)
{
    Result<ApplicationRequest> request = requestFor(uris);
    if (!request)
        return refuse(request.error());
    take(*std::move(request), platformData);
}

void ApplicationService::ActivateAction(const QString& name, const QVariantList& parameter,
                                        const QVariantMap& platformData)
{
    const std::string action = name.toStdString();
    if (std::ranges::find(kHomeActions, action) == kHomeActions.end())
        return refuse({beginningOf(action, 100), "there is no such action"});
    const std::optional<QStringList> uris = photosOf(parameter);
    if (!uris)
        return refuse({action, "takes a list of files, or nothing"});
    Result<ApplicationRequest> request = requestFor(*uris);
    if (!request)
        return refuse(request.error());
    request->action = action;
    take(*std::move(request), platformData);
}

void ApplicationService::take(ApplicationRequest request, const QVariantMap& platformData)
{
    if (isTooLate(platformData))
        return refuse({{}, "this comes too late"});
    request.activationToken = tokenOf(platformData);
    if (m_handler) {
        if (const Outcome taken = m_handler(request); !taken)
            refuse(taken.error());
    } else if (m_waiting.size() < kMostWaiting) {
        m_waiting.push_back(std::move(request));
    } else {
        refuse({{}, "too many requests are waiting"});
    }
}

void ApplicationService::refuse(const Error& error)
{
    if (calledFromDBus())
        sendErrorReply(QDBusError::Failed, QString::fromStdString(shownText(error.message())));
}

Outcome handOver(const QDBusConnection& bus, const ApplicationRequest& request, double seconds)
{
    if (request.photos.size() > kMostRequestedPhotos)
        return Error{{}, "too many files"};
    const int milliseconds = static_cast<int>(seconds * 1000);
    const QDBusMessage reply =
        bus.call(callFor(request, sharedMilliseconds() + milliseconds), QDBus::Block, milliseconds + kGrace);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return success();
    return Error{{}, reply.errorMessage().toStdString()};
}

} // namespace lamina
