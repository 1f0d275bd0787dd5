#pragma once

#include "platform/media/AVCaptureDevice.h"
#include "platform/media/capture/CaptureModule_p.h"
#include "platform/media/capture/RawFrame.h"
#include "platform/media/capture/RawFrameConversion_p.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace lamina {

/// A camera or microphone of the service, for as long as somebody keeps it: gone, it can't be opened until it is back.
/// From any thread.
class CaptureDevice : public AVCaptureDevice {
public:
    explicit CaptureDevice(CaptureNode node);

    std::string uniqueID() const override;
    std::string localizedName() const override;
    AVTrackMediaType mediaType() const override;
    AVCaptureDevicePosition position() const override;
    int rotation() const override;
    std::vector<AVCaptureDeviceFormat> formats() const override;
    Result<std::shared_ptr<AVCaptureDeviceInput>> makeInput() override;

    /// For the service: what is known of it now, and through whom it is reached (null: it is gone).
    void update(CaptureNode node, const std::shared_ptr<CaptureConnection>& connection);
    void setGone() { update(node(), nullptr); }
    CaptureNode node() const;
    /// Null: it is gone.
    std::shared_ptr<CaptureConnection> connection() const;

private:
    /// One thing of the node: frames ask, which are many, and it has hundreds of formats.
    template <class Value>
    Value told(Value CaptureNode::*member) const
    {
        const std::scoped_lock lock(m_mutex);
        return m_node.*member;
    }

    mutable std::mutex m_mutex;
    CaptureNode m_node;
    std::weak_ptr<CaptureConnection> m_connection;
};

/// A device that has been opened: its stream, and what becomes of what that brings.
class CaptureDeviceInput : public AVCaptureDeviceInput {
public:
    explicit CaptureDeviceInput(std::shared_ptr<CaptureDevice> device);
    ~CaptureDeviceInput() override;

    void start(const AVCaptureRequest& request, AVCaptureHandlers handlers) override;
    void stop() override;

private:
    bool takeFrame(const RawFrame& frame, std::int64_t nanoseconds);
    void takeSound(std::shared_ptr<AudioBuffer> sound, std::int64_t nanoseconds);
    void end(const Error& error);

    std::shared_ptr<CaptureDevice> m_source;
    RawFrameConverter m_converter; ///< on the stream's thread
    CVPixelFormat m_pixelFormat = CVPixelFormat::BGRA;
    std::mutex m_handling; ///< while a handler is called, so that stopping waits for it
    AVCaptureHandlers m_handlers;
    std::shared_ptr<CaptureConnection> m_connection; ///< while it runs
    std::unique_ptr<CaptureStream> m_stream;
};

} // namespace lamina
