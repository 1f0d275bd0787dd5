#pragma once

#include "app/LiveSource.h"
#include "gpu/endpoints/GPUImageStillCamera.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/media/AVCaptureDevice.h"

#include <functional>
#include <memory>
#include <string>

namespace lamina {

/// A camera as the source of the live screen: open only while it runs.
class LiveCamera : public LiveSource {
public:
    using LiveSource::LiveSource;
    ~LiveCamera() override;

    Outcome start() override;
    void stop() override;
    bool isRunning() const override { return m_camera != nullptr; }
    bool isLive() const override { return true; }
    bool hasSound() const override;
    void setRecorder(std::shared_ptr<GPUImageAudioEncodingTarget> recorder) override;

    /// Whether there is another one to go to.
    static bool hasAnother();
    /// To the next of those that are there, which is opened by the next start.
    void chooseAnother();
    /// Whether a still of its own would have more pixels than its frames.
    bool takesLargerStills() const;
    /// Takes one through the graph up to `last`. Told on a thread that is not the main one.
    void takeStill(const std::shared_ptr<GPUImageOutput>& last, std::function<void(const Result<UIImage>&)> done);

private:
    std::shared_ptr<AVCaptureDevice> device() const;

    std::string m_device; ///< of the one that was chosen; empty: the best
    std::shared_ptr<GPUImageStillCamera> m_camera;
    std::shared_ptr<GPUImageAudioEncodingTarget> m_recorder;
};

} // namespace lamina
