#pragma once

#include "platform/media/AVCaptureDevice.h"

#include <memory>
#include <utility>
#include <vector>

namespace lamina {

/// Lets cameras run. Main thread.
class AVCaptureSession {
public:
    AVCaptureSession() = default;
    /// Stops.
    ~AVCaptureSession();
    AVCaptureSession(const AVCaptureSession&) = delete;
    AVCaptureSession& operator=(const AVCaptureSession&) = delete;

    const std::vector<std::shared_ptr<AVCaptureDeviceInput>>& inputs() const { return m_inputs; }
    /// Not one that it has already.
    bool canAddInput(const std::shared_ptr<AVCaptureDeviceInput>& input) const;
    /// Only one that can be added; it runs when the session does.
    void addInput(std::shared_ptr<AVCaptureDeviceInput> input);

    /// Hears of the frames of all inputs, on the thread of each; to be set before the session runs.
    void setFrameHandler(AVCaptureDeviceInput::FrameHandler handler) { m_frameHandler = std::move(handler); }

    /// False until it is started, and without inputs.
    bool isRunning() const { return m_running; }
    /// All inputs begin; nothing without any, and while it runs.
    void startRunning();
    /// All inputs end.
    void stopRunning();

private:
    std::vector<std::shared_ptr<AVCaptureDeviceInput>> m_inputs;
    AVCaptureDeviceInput::FrameHandler m_frameHandler;
    bool m_running = false;
};

} // namespace lamina
