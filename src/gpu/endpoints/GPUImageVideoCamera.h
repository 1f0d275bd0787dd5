#pragma once

#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/endpoints/YUVConversionProgram.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/base/Result.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/AVCaptureOutput.h"
#include "platform/media/AVCaptureSession.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/view/UIViewController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace lamina {

/// Hears of a camera's frames, on the video processing queue; not held.
class GPUImageVideoCameraDelegate {
public:
    virtual ~GPUImageVideoCameraDelegate() = default;
    /// A frame is about to go through the graph; not of those that are dropped.
    virtual void willOutputSampleBuffer(const CMSampleBuffer&) {}
};

/// A camera as a source: each frame goes through the graph, its sound to the `audioEncodingTarget`. While one frame is
/// under way those that come are dropped, so that the latency stays at one frame.
class GPUImageVideoCamera : public GPUImageOutput, public AVCaptureSampleBufferDelegate {
public:
    /// A camera at that place, stopped. The error names what there is none of, or why it can't be opened.
    static Result<std::shared_ptr<GPUImageVideoCamera>>
    make(const std::string& sessionPreset = kAVCaptureSessionPreset640x480,
         AVCaptureDevicePosition cameraPosition = AVCaptureDevicePosition::Back);
    /// This camera, for whoever lets the user choose.
    static Result<std::shared_ptr<GPUImageVideoCamera>> make(const std::string& sessionPreset,
                                                             const std::shared_ptr<AVCaptureDevice>& device);
    /// Stops, and waits for a frame that is under way.
    ~GPUImageVideoCamera() override;

    const std::shared_ptr<AVCaptureSession>& captureSession() const;
    std::shared_ptr<AVCaptureDevice> inputCamera() const;
    AVCaptureDevicePosition cameraPosition() const;
    static bool isBackFacingCameraPresent();
    static bool isFrontFacingCameraPresent();

    void startCameraCapture();
    /// Afterwards no frame is pushed any more.
    void stopCameraCapture();
    /// Frames are dropped as they arrive, and nobody hears of them.
    void pauseCameraCapture();
    void resumeCameraCapture();
    bool isRunning() const;
    bool capturePaused() const;
    /// To the camera at the other place; nothing without one in front. The old one stays where the new can't be opened,
    /// which the outcome tells.
    Outcome rotateCamera();

    std::string captureSessionPreset() const;
    void setCaptureSessionPreset(const std::string& preset);
    /// Frames a second; below 1, as at first: the camera's choice.
    int frameRate() const;
    void setFrameRate(int framesPerSecond);

    /// Whether frames come as Y and Cb Cr, and are made red, green and blue on the device, where the rotation is paid
    /// for as well. Before the start.
    bool captureAsYUV() const;
    void setCaptureAsYUV(bool captureAsYUV);

    /// As which the frames are seen; 0, as at first: as they come.
    UIInterfaceOrientation outputImageOrientation() const;
    void setOutputImageOrientation(UIInterfaceOrientation orientation);
    bool horizontallyMirrorFrontFacingCamera() const;
    void setHorizontallyMirrorFrontFacingCamera(bool mirror);
    bool horizontallyMirrorRearFacingCamera() const;
    void setHorizontallyMirrorRearFacingCamera(bool mirror);
    /// Sets the orientation by which frames are upright as the device is held now, and mirrors a camera in front.
    void followDeviceOrientation();
    /// The size of frames as targets see them, for the frames that came last; zero before the first.
    CGSize outputFrameSize() const;

    /// Opens the microphone; false where that is done already or there is none.
    bool addAudioInputsAndOutputs();
    bool removeAudioInputsAndOutputs();
    virtual void removeInputsAndOutputs();
    /// With a target the microphone is opened, where it isn't; without one it is closed, where this has opened it.
    void setAudioEncodingTarget(std::shared_ptr<GPUImageAudioEncodingTarget> target) override;

    /// Measures from the sixth frame on, and logs.
    bool runBenchmark() const;
    void setRunBenchmark(bool run);
    /// In milliseconds; none until six frames were counted.
    std::optional<double> averageFrameDurationDuringCapture() const;
    void resetBenchmarkAverage();

    void setDelegate(const std::weak_ptr<GPUImageVideoCameraDelegate>& delegate);
    /// Hears, on a thread of the camera's, that it has ended by itself: unplugged, taken away, its service gone.
    void setEndHandler(AVCaptureSession::EndHandler handler);

    /// Pushes a frame through the graph, on the video processing queue.
    void processVideoSampleBuffer(const CMSampleBuffer& sample);
    void processAudioSampleBuffer(const CMSampleBuffer& sample);
    void captureOutput(AVCaptureOutput& output, const CMSampleBuffer& sample) override;
};

} // namespace lamina
