#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

class AVCaptureDevice;

/// What an open device is to give.
struct AVCaptureRequest {
    IntSize size = {};    ///< of frames as they come; the nearest mode is taken. Empty: the largest
    double frameRate = 0; ///< a second; the nearest that the mode has. 0: what the device likes
    CVPixelFormat pixelFormat = CVPixelFormat::BGRA; ///< one of those that have planes: frames are converted to it
    friend bool operator==(const AVCaptureRequest&, const AVCaptureRequest&) = default;
};

/// Those who hear of an open device, on a thread of the device's, one call at a time.
struct AVCaptureHandlers {
    /// A frame, its rows without padding, or a stretch of sound; its time is that of the steady clock.
    std::function<void(const CMSampleBuffer&)> sample;
    /// The device gives nothing any more: unplugged, taken away, its service gone. Called once, as the last.
    std::function<void(const Error&)> ended;
};

/// A device that has been opened for one session. Sounds and frames come between `start` and `stop`.
class AVCaptureDeviceInput {
public:
    explicit AVCaptureDeviceInput(std::shared_ptr<AVCaptureDevice> device)
        : m_device(std::move(device))
    {
    }
    /// Closes the device.
    virtual ~AVCaptureDeviceInput() = default;
    AVCaptureDeviceInput(const AVCaptureDeviceInput&) = delete;
    AVCaptureDeviceInput& operator=(const AVCaptureDeviceInput&) = delete;

    /// What was opened. Never null.
    const std::shared_ptr<AVCaptureDevice>& device() const { return m_device; }

    /// Returns at once; what stands in the way is told by `ended`. This and `stop` are called by turns, by one thread
    /// at a time, and never by a handler.
    virtual void start(const AVCaptureRequest& request, AVCaptureHandlers handlers) = 0;
    /// No handler is called any more after this, and none is under way.
    virtual void stop() = 0;

private:
    std::shared_ptr<AVCaptureDevice> m_device;
};

/// A camera or a microphone. Whoever serves them installs itself as their source; without one there are none. From any
/// thread.
class AVCaptureDevice : public std::enable_shared_from_this<AVCaptureDevice> {
public:
    virtual ~AVCaptureDevice() = default;

    /// The same after it was unplugged and plugged in again.
    virtual std::string uniqueID() const = 0;
    /// To be shown.
    virtual std::string localizedName() const = 0;
    /// What it gives.
    virtual AVTrackMediaType mediaType() const { return AVTrackMediaType::Video; }
    /// Where a camera looks; `Unspecified` where nobody has told, as of most that are plugged in.
    virtual AVCaptureDevicePosition position() const { return AVCaptureDevicePosition::Unspecified; }
    /// By how many degrees clockwise its frames must be turned to be upright while the device is held upright: 0, 90,
    /// 180 or 270.
    virtual int rotation() const { return 0; }
    /// The modes of a camera, the largest first, and of one size the one that is cheapest to take.
    virtual std::vector<AVCaptureDeviceFormat> formats() const { return {}; }
    /// The mode that is taken where this is wanted, as in `AVCaptureRequest`; none where it tells no modes.
    std::optional<AVCaptureDeviceFormat> nearestFormat(IntSize size, double frameRate) const;
    /// Opens it; an error's subject is its name.
    virtual Result<std::shared_ptr<AVCaptureDeviceInput>> makeInput() = 0;

    /// Whoever serves cameras and microphones. Its functions are called from any thread and wait for nobody.
    struct Source {
        /// Whether the application may use cameras.
        std::function<AVAuthorizationStatus()> authorizationStatus;
        /// Asks the user and answers once, from any thread, at once or later. Empty: the status is the answer.
        std::function<void(std::function<void(bool granted)>)> requestAccess;
        /// Those that are there now, the best first.
        std::function<std::vector<std::shared_ptr<AVCaptureDevice>>(AVTrackMediaType)> devices;
    };
    /// Without an `authorizationStatus`: there are no cameras, and nobody forbids them. Tells observers.
    static void setSource(Source source);

    /// Whether the application may use cameras; `Authorized` while nobody serves any.
    static AVAuthorizationStatus videoAuthorizationStatus();
    /// The handler hears the answer once, on the thread on which the source gives it.
    static void requestVideoAccess(std::function<void(bool granted)> handler);

    /// Those that are there now, the best first.
    static std::vector<std::shared_ptr<AVCaptureDevice>> devices(AVTrackMediaType type = AVTrackMediaType::Video);
    /// The first of them; null: there is none.
    static std::shared_ptr<AVCaptureDevice> defaultDevice(AVTrackMediaType type);
    static std::shared_ptr<AVCaptureDevice> defaultVideoDevice() { return defaultDevice(AVTrackMediaType::Video); }
    /// The first camera that looks there or, for want of one, whose place nobody has told; null: there is none.
    static std::shared_ptr<AVCaptureDevice> defaultVideoDevice(AVCaptureDevicePosition position);
    /// Null: it isn't there.
    static std::shared_ptr<AVCaptureDevice> deviceWithUniqueID(const std::string& uniqueID);

    /// Tells observers of `kAVCaptureDevicesDidChangeNotification` that devices came or went, or that the user has
    /// answered. For sources, on any thread.
    static void devicesDidChange();
};

/// Posted to the default centre on whatever thread has noticed.
inline constexpr const char* kAVCaptureDevicesDidChangeNotification = "AVCaptureDevicesDidChangeNotification";

} // namespace lamina
