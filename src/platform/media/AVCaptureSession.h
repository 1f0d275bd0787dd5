#pragma once

#include "platform/base/Result.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/AVCaptureOutput.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/media/CMSampleBuffer.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

/// Brings what cameras and microphones give to outputs: the frames of its camera to those for frames, the sound of its
/// microphone to those for sound.
///
/// From any thread but those on which handlers are called. Changes take effect at once, or with `commitConfiguration`
/// where they stand within a configuration: a device that runs and has to give something else is started again, once.
/// Held by std::shared_ptr where outputs take stills.
class AVCaptureSession : public std::enable_shared_from_this<AVCaptureSession> {
public:
    AVCaptureSession();
    /// Stops.
    ~AVCaptureSession();
    AVCaptureSession(const AVCaptureSession&) = delete;
    AVCaptureSession& operator=(const AVCaptureSession&) = delete;

    /// Copies.
    std::vector<std::shared_ptr<AVCaptureDeviceInput>> inputs() const;
    std::vector<std::shared_ptr<AVCaptureOutput>> outputs() const;
    /// One of its kind: a camera, a microphone.
    bool canAddInput(const std::shared_ptr<AVCaptureDeviceInput>& input) const;
    /// Only one that can be added.
    void addInput(std::shared_ptr<AVCaptureDeviceInput> input);
    void removeInput(const std::shared_ptr<AVCaptureDeviceInput>& input);
    /// Not one that belongs to a session.
    bool canAddOutput(const std::shared_ptr<AVCaptureOutput>& output) const;
    /// Only one that can be added.
    void addOutput(std::shared_ptr<AVCaptureOutput> output);
    /// A still that it waits for fails.
    void removeOutput(const std::shared_ptr<AVCaptureOutput>& output);

    /// Default `kAVCaptureSessionPresetHigh`. One that names no size counts as that.
    std::string sessionPreset() const;
    void setSessionPreset(const std::string& preset);
    /// Of the camera, a second; the nearest that its mode has. 0, the default: what the camera likes.
    double frameRate() const;
    void setFrameRate(double framesPerSecond);

    /// Gathers changes until the outermost `commitConfiguration`.
    void beginConfiguration();
    void commitConfiguration();

    /// False until it is started, without inputs, and once a device has ended.
    bool isRunning() const;
    /// All inputs begin; nothing without any, and while it runs. Tries those that have ended again.
    void startRunning();
    /// All inputs end: nothing reaches an output any more after this, but for what waits on an output's queue.
    void stopRunning();

    /// Hears that a device has ended by itself, on the device's thread, after the session has stopped running; a still
    /// under way has failed then. Empty: nobody.
    using EndHandler = std::function<void(const Error&)>;
    void setEndHandler(EndHandler handler);

private:
    friend class AVCaptureStillImageOutput;
    struct Running;

    void applyChanges();
    AVCaptureRequest requestFor(const AVCaptureDeviceInput& input) const;
    void start(Running& running, const AVCaptureRequest& request);
    void deliver(const Running& running, const CMSampleBuffer& sample);
    void inputEnded(const std::shared_ptr<AVCaptureDeviceInput>& input, const Error& error);
    // Of a still output: the camera goes to its largest size, and comes back.
    Outcome beginStill(const AVCaptureOutput& output);
    void endStill(const AVCaptureOutput& output);

    /// Devices are started and stopped under this one alone, so that their handlers may take the other.
    mutable std::recursive_mutex m_configurationMutex;
    mutable std::mutex m_mutex; ///< for what follows
    std::vector<std::shared_ptr<Running>> m_inputs;
    std::vector<std::shared_ptr<AVCaptureOutput>> m_outputs;
    std::string m_preset = kAVCaptureSessionPresetHigh;
    double m_frameRate = 0;
    int m_configurations = 0;
    bool m_running = false;
    const AVCaptureOutput* m_stillOutput = nullptr; ///< one of the outputs, which takes a still
    EndHandler m_endHandler;
};

} // namespace lamina
