#pragma once

#include "gpu/endpoints/GPUImageStillCamera.h"
#include "gpu/endpoints/GPUImageView.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchTimer.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/Result.h"
#include "platform/base/UIDevice.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/view/UIImagePickerCamera.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UIView.h"

#include <QPointer>

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

public:
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
    void place(double width, double height) override;
    void setInSight(bool inSight) override;
    void start() override;
    void stop() override;
    void takePhoto() override;
    void retake() override;
    void switchCamera() override;
    void tryAgain() override;
    void openSettings() override;
    UIImagePickerPhoto photo() const override { return m_photo; }

private:
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
    NotificationObserver m_devicesObserver;
};

/// Makes it the camera of every picker.
void installPhotoCamera();

} // namespace lamina
