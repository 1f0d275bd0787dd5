#pragma once

#include "gpu/endpoints/GPUImageStillCamera.h"
#include "gpu/endpoints/GPUImageView.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchTimer.h"
#include "platform/base/MainObserver.h"
#include "platform/base/Result.h"
#include "platform/base/UIDevice.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/view/UIImagePickerCamera.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UIView.h"

#include <QPointer>
#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace lamina {

/// The camera with which the system's picker takes photos: the filter graph's, shown in an on-screen view.
///
/// It prefers the camera at the back, waits a moment for one where there is none, and goes on by itself when one that
/// was missed is there again. A photo is upright in the camera's largest size, mirrored as it was seen where the camera
/// is in front, and comes with the bytes of a JPEG from which it can be read again.
class PhotoCamera : public UIImagePickerCamera {
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY changed FINAL)
    Q_PROPERTY(double aspectRatio READ aspectRatio NOTIFY changed FINAL)
    Q_PROPERTY(bool canSwitch READ canSwitch NOTIFY changed FINAL)
    Q_PROPERTY(QString deviceName READ deviceName NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString message READ message NOTIFY changed FINAL)
    Q_PROPERTY(bool canTryAgain READ canTryAgain NOTIFY changed FINAL)
    Q_PROPERTY(bool refused READ isRefused NOTIFY changed FINAL)

public:
    enum State {
        Starting, ///< nothing is seen yet
        Live,     ///< what it sees is seen
        Taking,   ///< the photo is on its way
        Taken,    ///< the photo is seen
        Failed,   ///< there is nothing to see; the texts say why, and what can be done
    };
    Q_ENUM(State)

    /// Default quality of the JPEG.
    static constexpr double kQuality = 0.95;
    /// Seconds until it says that there is no camera,
    static constexpr double kDevicesPatience = 2;
    /// that the camera gives no picture,
    static constexpr double kFramePatience = 10;
    /// and lets go of one that nobody sees.
    static constexpr double kUnseenPatience = 10;

    PhotoCamera();
    /// Lets go of the camera.
    ~PhotoCamera() override;

    std::shared_ptr<UIView> view() override { return m_root; }
    void start() override;
    void stop() override;
    UIImagePickerPhoto photo() const override { return m_photo; }

    State state() const { return m_shown.state; }
    /// Width by height of what is seen.
    double aspectRatio() const { return m_shown.size.width / m_shown.size.height; }
    /// Whether there is another camera.
    bool canSwitch() const { return m_shown.canSwitch; }
    /// Of the camera in use; empty before one is.
    QString deviceName() const { return QString::fromStdString(m_shown.deviceName); }
    /// What there is to tell in states without a picture, in the user's language; mostly empty while it starts.
    QString title() const { return QString::fromStdString(m_shown.title); }
    QString message() const { return QString::fromStdString(m_shown.message); }
    /// Whether `tryAgain` makes sense.
    bool canTryAgain() const { return m_shown.canTryAgain; }
    /// Whether the user has refused the camera, which the system's settings can change.
    bool isRefused() const { return m_shown.refused; }

    /// The size of the view, in points.
    Q_INVOKABLE void place(double width, double height);
    /// Whether anybody can see it; not while the window is hidden. A camera that nobody has seen for some time is let
    /// go until somebody does.
    Q_INVOKABLE void setInSight(bool inSight);
    /// Only while live.
    Q_INVOKABLE void takePhoto();
    /// Gives the photo up; only where one was taken.
    Q_INVOKABLE void retake();
    /// Goes to the next camera.
    Q_INVOKABLE void switchCamera();
    /// Only where it has failed.
    Q_INVOKABLE void tryAgain();
    /// Opens the system's settings for this application.
    Q_INVOKABLE void openSettings();

signals:
    void changed();

private:
    /// All that views show of it.
    struct Shown {
        State state = Starting;
        CGSize size{3, 4}; ///< of what is seen, in any unit
        bool canSwitch = false;
        std::string deviceName = {};
        std::string title = {};
        std::string message = {};
        bool canTryAgain = false;
        bool refused = false;
        friend bool operator==(const Shown&, const Shown&) = default;
    };
    void show(const Shown& shown);

    class FrameWatch;
    /// Why there is nothing to see.
    enum class Trouble { None, NoDevice, Refused, NotOpened, Ended };

    void begin();
    void open();
    void openDevice(const std::shared_ptr<AVCaptureDevice>& device);
    std::shared_ptr<AVCaptureDevice> wantedDevice() const;
    void addViews();
    void frameSeen(CGSize size);
    void cameraEnded(const Error& error);
    void photoTaken(const Result<UIImagePickerPhoto>& photo);
    void devicesChanged();
    void letGo();
    void followDevice();

    void showStarting(std::string message = {});
    void fail(Trouble trouble, std::string title, std::string message);
    void waitFor(double seconds, std::function<void()> tooLong);

    /// `body` as something that any thread may call: it runs on the main thread, unless this object is gone or has
    /// begun something else meanwhile.
    template <class Body>
    auto onMain(Body body)
    {
        return [self = QPointer(this), attempt = m_attempt, body = std::move(body)](const auto&... values) {
            DispatchQueue::main().async([self, attempt, body, values...] {
                if (self && self->m_attempt == attempt)
                    body(values...);
            });
        };
    }

    Shown m_shown;
    std::shared_ptr<UIView> m_root;
    std::shared_ptr<GPUImageView> m_seen;
    std::shared_ptr<FrameWatch> m_watch;
    std::shared_ptr<UIImageView> m_still;
    std::shared_ptr<GPUImageStillCamera> m_camera; ///< null while none is open
    std::string m_deviceID;                        ///< of the one in use, or that was
    bool m_wanted = false;                         ///< between `start` and `stop`
    bool m_inSight = true;
    Trouble m_trouble = Trouble::None;
    int m_attempt = 0;
    UIDeviceOrientation m_held = UIDeviceOrientation::Unknown;
    UIImagePickerPhoto m_photo;
    DispatchTimer m_patience; ///< for what is under way
    DispatchTimer m_unseen;
    MainObserver m_devicesObserver;
};

/// Makes it the camera of every picker.
void installPhotoCamera();

} // namespace lamina
