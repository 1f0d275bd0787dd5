#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/capture/RawFrame.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// What the module with PipeWire does, as functions that are looked up when it is loaded. It knows nodes, streams and
/// frames as they come; devices are the program's.
namespace lamina {

/// A camera or a microphone as the service tells of it.
struct CaptureNode {
    std::uint32_t id = 0; ///< within the connection
    std::string uniqueID;
    std::string name; ///< to be shown
    AVTrackMediaType type = AVTrackMediaType::Video;
    AVCaptureDevicePosition position = AVCaptureDevicePosition::Unspecified;
    int rotation = 0; ///< as in AVCaptureDevice
    std::vector<AVCaptureDeviceFormat> formats = {};
    friend bool operator==(const CaptureNode&, const CaptureNode&) = default;
};

/// Hears of a connection, on its thread.
struct CaptureConnectionHandlers {
    /// All that are there, the default of each kind first: once the list is complete, and when it is another one.
    std::function<void(std::vector<CaptureNode>)> nodes;
    /// The service is gone, for good; once, after the streams have ended.
    std::function<void()> lost;
};

/// What is to come from a node.
struct CaptureStreamRequest {
    std::uint32_t node = 0;
    std::optional<AVCaptureDeviceFormat> format; ///< none: whatever it gives; of a microphone too
    IntSize size;                                ///< without a format: about so large
    double frameRate = 0;                        ///< a second; 0: what the node likes
};

/// Hears of a stream, on the connection's thread.
struct CaptureStreamHandlers {
    /// A frame, which is there for as long as the call lasts, and its time on the steady clock. The next ones wait, and
    /// the latest of them wins. False: it can't be read.
    std::function<bool(const RawFrame& frame, std::int64_t nanoseconds)> frame;
    /// A stretch of sound, and when it began.
    std::function<void(std::shared_ptr<AudioBuffer> sound, std::int64_t nanoseconds)> sound;
    /// Nothing comes any more; once, as the last.
    std::function<void(const Error&)> ended;
};

/// An open stream. Closes when it is destroyed, on any thread but the connection's: no handler is called after that.
class CaptureStream {
public:
    virtual ~CaptureStream() = default;
};

/// A connection to the service, with a thread of its own. Outlives its streams; not destroyed on its thread.
class CaptureConnection {
public:
    virtual ~CaptureConnection() = default;
    /// From any thread. What stands in the way is told by `ended`, later.
    virtual std::unique_ptr<CaptureStream> open(const CaptureStreamRequest& request,
                                                CaptureStreamHandlers handlers) = 0;
};

/// The functions. Every error is a value; nothing is thrown.
struct CaptureModule {
    const char* version; ///< of Lamina, which must be the program's
    /// `descriptor`: a connected socket, which is the connection's from now on; -1: the session's own service.
    Result<std::unique_ptr<CaptureConnection>> (*connect)(int descriptor, CaptureConnectionHandlers handlers);
};

/// The name under which the module gives its functions: `const CaptureModule* laminaCaptureModule()`.
inline constexpr const char* kCaptureModuleEntry = "laminaCaptureModule";

/// The module, loaded when it is first asked for. The error, without a subject, is the same at every call.
Result<const CaptureModule*> captureModule();

} // namespace lamina
