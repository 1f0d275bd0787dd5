#include "platform/host/system/CameraPortal.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/host/system/BackgroundWork.h"
#include "platform/host/system/BusCalls.h"
#include "platform/media/capture/CaptureService.h"
#include "platform/view/UIImagePickerController.h"

#include <QDBusArgument>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QPointer>
#include <QVariantMap>

#include <algorithm>
#include <fcntl.h>
#include <mutex>
#include <utility>

namespace lamina {

namespace {

const QString kCameraInterface = QStringLiteral("org.freedesktop.portal.Camera");
const QString kPropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString kPresence = QStringLiteral("IsCameraPresent");

/// Seconds. A service that doesn't come back is asked for ever less often.
constexpr double kFirstPause = 0.5;
constexpr double kLongestPause = 60;

using Devices = std::vector<std::shared_ptr<AVCaptureDevice>>;

} // namespace

/// What the source's functions look at on whatever thread they are called.
struct CameraPortal::Known {
    enum Road { Nothing, Portal, Direct };

    mutable std::mutex mutex;
    Road road = Nothing;
    bool present = false;
    AVAuthorizationStatus status = AVAuthorizationStatus::NotDetermined;

    Road presentRoad() const
    {
        const std::scoped_lock lock(mutex);
        return road;
    }
    AVAuthorizationStatus presentStatus() const
    {
        const std::scoped_lock lock(mutex);
        return road == Direct ? AVAuthorizationStatus::Authorized : status;
    }
};

CameraPortal::Service CameraPortal::pipeWire()
{
    return {[](int descriptor) { CaptureService::shared().start(descriptor); },
            [] { return CaptureService::shared().error().has_value(); },
            [](AVTrackMediaType type) { return CaptureService::shared().devices(type); }, CaptureService::openSource()};
}

CameraPortal::CameraPortal(BusConnector connector, Service service, QObject* parent)
    : QObject(parent)
    , m_connector(connector)
    , m_service(std::move(service))
    , m_request(std::move(connector))
    , m_known(std::make_shared<Known>())
    , m_devicesObserver(kAVCaptureDevicesDidChangeNotification, [this] { renewRemote(); })
{
    AVCaptureDevice::Source source;
    source.authorizationStatus = [known = m_known] { return known->presentStatus(); };
    source.requestAccess = [self = QPointer(this)](Handler handler) {
        DispatchQueue::main().async([self, handler = std::move(handler)]() mutable {
            if (self)
                self->requestAccess(std::move(handler));
            else
                handler(false);
        });
    };
    source.devices = [known = m_known, service = m_service](AVTrackMediaType type) {
        switch (known->presentRoad()) {
        case Known::Direct:
            return service.openSource.devices(type);
        case Known::Portal:
            return known->presentStatus() == AVAuthorizationStatus::Authorized ? service.devices(type) : Devices();
        case Known::Nothing:
            break;
        }
        return Devices();
    };
    AVCaptureDevice::setSource(std::move(source));
    UIImagePickerController::setCameraAvailability([this] { return isAvailable(); });
}

CameraPortal::~CameraPortal()
{
    UIImagePickerController::setCameraAvailability({});
    AVCaptureDevice::setSource({});
    for (const Handler& handler : std::exchange(m_waiting, {}))
        handler(false);
    if (m_connecting)
        awaitBusQueue();
}

bool CameraPortal::isAvailable() const
{
    if (m_known->presentRoad() == Known::Direct)
        return !m_service.openSource.devices(AVTrackMediaType::Video).empty();
    const std::scoped_lock lock(m_known->mutex);
    return m_known->present;
}

void CameraPortal::begin()
{
    if (std::exchange(m_begun, true))
        return;
    m_connecting = true;
    inBackground<QDBusConnection>(busQueue(), this, m_connector, [this](const QDBusConnection& bus) {
        m_connecting = false;
        found(bus);
    });
}

void CameraPortal::found(const QDBusConnection& bus)
{
    if (!bus.isConnected())
        return setRoad(Known::Direct);
    m_bus = bus;
    // First listen, then read: a change in between would be missed.
    m_bus->connect(kPortalService, kPortalPath, kPropertiesInterface, QStringLiteral("PropertiesChanged"), this,
                   SLOT(propertiesChanged(QDBusMessage)));
    m_watcher = std::make_unique<QDBusServiceWatcher>(kPortalService, bus, QDBusServiceWatcher::WatchForRegistration);
    connect(m_watcher.get(), &QDBusServiceWatcher::serviceRegistered, this, [this] { readPresence(); });
    readPresence();
}

void CameraPortal::readPresence()
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(kPortalService, kPortalPath, kPropertiesInterface, QStringLiteral("Get"));
    call << kCameraInterface << kPresence;
    callBus(*m_bus, call, this, [this](const QDBusMessage& reply) { takePresence(reply); });
}

void CameraPortal::takePresence(const QDBusMessage& reply)
{
    const QVariant value = reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String("v")
                               ? reply.arguments().constFirst().value<QDBusVariant>().variant()
                               : QVariant();
    if (value.metaType() == QMetaType::fromType<bool>()) {
        setPresent(value.toBool());
        setRoad(Known::Portal);
    } else if (m_known->presentRoad() == Known::Nothing) {
        setRoad(Known::Direct); // no portal, or none that knows cameras
    }
}

void CameraPortal::propertiesChanged(const QDBusMessage& message)
{
    if (message.signature() != QLatin1String("sa{sv}as") ||
        message.arguments().constFirst().toString() != kCameraInterface)
        return;
    const QVariantMap changed = qdbus_cast<QVariantMap>(message.arguments().at(1));
    if (!changed.contains(kPresence))
        return readPresence();
    setPresent(changed.value(kPresence).toBool());
    AVCaptureDevice::devicesDidChange();
}

void CameraPortal::setPresent(bool present)
{
    const std::scoped_lock lock(m_known->mutex);
    m_known->present = present;
}

void CameraPortal::setRoad(int road)
{
    {
        const std::scoped_lock lock(m_known->mutex);
        m_known->road = static_cast<Known::Road>(road);
    }
    AVCaptureDevice::devicesDidChange();
    if (!m_waiting.empty())
        ask();
}

void CameraPortal::requestAccess(Handler handler)
{
    m_waiting.push_back(std::move(handler));
    begin();
    ask();
}

void CameraPortal::ask()
{
    const Known::Road road = m_known->presentRoad();
    if (road == Known::Nothing || m_asking) // it is asked when that is known, and answered once
        return;
    if (road == Known::Direct || m_known->presentStatus() == AVAuthorizationStatus::Authorized)
        return settle(AVAuthorizationStatus::Authorized);
    m_asking = true;
    m_request.ask(
        [] {
            return PortalCall{QStringLiteral("Camera"), QStringLiteral("AccessCamera"), {}, {}};
        },
        [this](const PortalAnswer& answer) { answered(answer); });
}

void CameraPortal::answered(const PortalAnswer& answer)
{
    switch (answer.kind) {
    case PortalAnswer::Kind::Taken:
        return openRemote();
    case PortalAnswer::Kind::Cancelled:
        return settle(AVAuthorizationStatus::Denied);
    case PortalAnswer::Kind::Unavailable:
    case PortalAnswer::Kind::Failed:
        break;
    }
    logWarning("the camera: " + answer.error.cause);
    settle(AVAuthorizationStatus::NotDetermined); // nobody has refused it
}

void CameraPortal::openRemote()
{
    QDBusMessage call = QDBusMessage::createMethodCall(kPortalService, kPortalPath, kCameraInterface,
                                                       QStringLiteral("OpenPipeWireRemote"));
    call << QVariantMap();
    callBus(*m_bus, call, this, [this](const QDBusMessage& reply) { takeRemote(reply); });
}

void CameraPortal::takeRemote(const QDBusMessage& reply)
{
    const auto remote = reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String("h")
                            ? reply.arguments().constFirst().value<QDBusUnixFileDescriptor>()
                            : QDBusUnixFileDescriptor();
    const int descriptor = remote.isValid() ? ::fcntl(remote.fileDescriptor(), F_DUPFD_CLOEXEC, 0) : -1;
    if (descriptor < 0) {
        logWarning("the camera: the desktop gives no connection: " + reply.errorMessage().toStdString());
        return settle(AVAuthorizationStatus::NotDetermined);
    }
    m_service.start(descriptor);
    settle(AVAuthorizationStatus::Authorized);
}

/// The question is answered, by `NotDetermined` that it could not be asked.
void CameraPortal::settle(AVAuthorizationStatus status)
{
    m_asking = false;
    {
        const std::scoped_lock lock(m_known->mutex);
        m_known->status = status;
    }
    AVCaptureDevice::devicesDidChange();
    for (const Handler& handler : std::exchange(m_waiting, {}))
        handler(status == AVAuthorizationStatus::Authorized);
}

/// A connection doesn't outlive its service; what the user has granted does.
void CameraPortal::renewRemote()
{
    if (m_known->presentRoad() != Known::Portal || m_asking || m_renewal.isPending() ||
        m_known->presentStatus() != AVAuthorizationStatus::Authorized)
        return;
    if (!m_service.isLost()) {
        if (!m_service.devices(AVTrackMediaType::Video).empty())
            m_pause = 0;
        return;
    }
    m_pause = std::clamp(2 * m_pause, kFirstPause, kLongestPause);
    m_renewal = DispatchTimer(busQueue(), m_pause, [self = QPointer(this)] {
        DispatchQueue::main().async([self] {
            if (self && !std::exchange(self->m_asking, true))
                self->openRemote();
        });
    });
}

} // namespace lamina
