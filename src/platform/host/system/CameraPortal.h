#pragma once

#include "platform/base/DispatchTimer.h"
#include "platform/base/MainObserver.h"
#include "platform/host/system/Portal.h"
#include "platform/host/system/PortalRequest.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/AVCaptureTypes.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QDBusServiceWatcher;

namespace lamina {

/// The user's cameras, by the portal org.freedesktop.portal.Camera of the session bus, which asks the user and hands
/// out a connection to PipeWire; or by PipeWire itself where there is no such portal, and nobody has to be asked.
///
/// While it lives it is the source of `AVCaptureDevice`, and says whether pickers can take photos: while the user has
/// not been asked, a camera that the portal tells of counts as there. What the user has refused stays refused in this
/// process until somebody asks again. Main thread.
class CameraPortal : public QObject {
    Q_OBJECT

public:
    /// What it does with PipeWire.
    struct Service {
        /// Begins with the portal's connection, which it owns from then on.
        std::function<void(int descriptor)> start;
        /// Whether that connection was lost.
        std::function<bool()> isLost;
        /// Those that the connection tells of.
        std::function<std::vector<std::shared_ptr<AVCaptureDevice>>(AVTrackMediaType)> devices;
        /// Where there is no portal.
        AVCaptureDevice::Source openSource;
    };
    /// `CaptureService`.
    static Service pipeWire();

    explicit CameraPortal(BusConnector connector = sessionBus, Service service = pipeWire(), QObject* parent = nullptr);
    /// There are no cameras any more. Waits for a connection to the bus that is just being made: Qt's own end must not
    /// overtake it.
    ~CameraPortal() override;

    /// Looks for the portal, in the background; nothing is known of cameras before. The second time nothing happens.
    void begin();

private slots:
    void propertiesChanged(const QDBusMessage& message);

private:
    using Handler = std::function<void(bool granted)>;
    struct Known;

    void found(const QDBusConnection& bus);
    void readPresence();
    void takePresence(const QDBusMessage& reply);
    void setPresent(bool present);
    void setRoad(int road);
    bool isAvailable() const;
    void requestAccess(Handler handler);
    void ask();
    void answered(const PortalAnswer& answer);
    void openRemote();
    void takeRemote(const QDBusMessage& reply);
    void settle(AVAuthorizationStatus status);
    void renewRemote();

    BusConnector m_connector;
    Service m_service;
    PortalRequest m_request;
    std::shared_ptr<Known> m_known; ///< shared with the source's functions
    std::vector<Handler> m_waiting; ///< for the user's answer
    bool m_begun = false;
    bool m_connecting = false;
    bool m_asking = false;
    double m_pause = 0; ///< seconds until a lost connection is renewed
    DispatchTimer m_renewal;
    std::optional<QDBusConnection> m_bus;
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
    MainObserver m_devicesObserver;
};

} // namespace lamina
