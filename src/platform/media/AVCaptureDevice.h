#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <functional>
#include <memory>
#include <string>

namespace lamina {

/// Whether the user lets the application at the cameras. The values are the platform's.
enum class AVAuthorizationStatus { NotDetermined = 0, Restricted = 1, Denied = 2, Authorized = 3 };

/// A camera that has been opened for one session. Frames come between `start` and `stop`.
class AVCaptureDeviceInput {
public:
    /// Hears of each frame, as it is seen while the device is held upright, on whatever thread takes it.
    using FrameHandler = std::function<void(const UIImage& frame)>;

    /// Closes the camera.
    virtual ~AVCaptureDeviceInput() = default;

    /// This and `stop` are called by turns, on the main thread.
    virtual void start(FrameHandler handler) = 0;
    /// The handler is not called any more after this.
    virtual void stop() = 0;
};

/// A camera. Whoever serves cameras installs itself as their source; without one there are none. Main thread, where
/// nothing else is said.
class AVCaptureDevice {
public:
    virtual ~AVCaptureDevice() = default;

    /// To be shown.
    virtual std::string localizedName() const = 0;
    /// Opens the camera; an error's subject is its name.
    virtual Result<std::shared_ptr<AVCaptureDeviceInput>> makeInput() = 0;

    /// Whoever serves cameras.
    struct Source {
        /// Whether the application may use them.
        std::function<AVAuthorizationStatus()> authorizationStatus;
        /// Asks the user and answers once, from any thread, at once or later. Empty: the status is the answer.
        std::function<void(std::function<void(bool granted)>)> requestAccess;
        /// Null: there is none.
        std::function<std::shared_ptr<AVCaptureDevice>()> defaultVideoDevice;
    };
    /// Without an `authorizationStatus`: there are no cameras, and nobody forbids them.
    static void setSource(Source source);

    /// Whether the application may use cameras; `Authorized` while nobody serves any.
    static AVAuthorizationStatus videoAuthorizationStatus();
    /// The handler hears the answer once, on the thread on which the source gives it.
    static void requestVideoAccess(std::function<void(bool granted)> handler);
    /// Null: there is none.
    static std::shared_ptr<AVCaptureDevice> defaultVideoDevice();
};

} // namespace lamina
