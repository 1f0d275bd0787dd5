#pragma once

#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/endpoints/FrameUpload.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/base/Result.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/AVCaptureOutput.h"
#include "platform/media/AVCaptureSession.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"
#include "platform/view/UIViewController.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace lamina {

/// Hears of a camera's frames, on the video processing queue; not held.
class GPUImageVideoCameraDelegate {
public:
    virtual ~GPUImageVideoCameraDelegate() = default;
    /// A frame has come, and is about to go through the graph unless the capture is paused; not of those that are
    /// dropped because another is under way.
    virtual void willOutputSampleBuffer(const CMSampleBuffer&) {}
};

/// A camera as a source: each frame goes through the graph, its sound to the `audioEncodingTarget`. While one frame is
/// under way those that come are dropped, so that the latency stays at one frame. Frames are told their time on the
/// steady clock.
///
/// Operations may be called from any thread. The last reference may go on any thread, that of a frame under way too:
/// nothing that the camera calls runs on a thread for which its device waits.
class GPUImageVideoCamera : public GPUImageOutput, public AVCaptureSampleBufferDelegate {
public:
    /// A camera at that place, stopped; one whose place nobody has told serves for both. The error names what there is
    /// none of, or why it can't be opened.
    static Result<std::shared_ptr<GPUImageVideoCamera>>
    make(const std::string& sessionPreset = kAVCaptureSessionPreset640x480,
         AVCaptureDevicePosition cameraPosition = AVCaptureDevicePosition::Back);
    /// This camera, for whoever lets the user choose.
    static Result<std::shared_ptr<GPUImageVideoCamera>> make(const std::string& sessionPreset,
                                                             const std::shared_ptr<AVCaptureDevice>& device);
    /// Stops. A frame that is under way holds the camera until it has gone through the graph.
    ~GPUImageVideoCamera() override;

    const std::shared_ptr<AVCaptureSession>& captureSession() const { return m_captureSession; }
    /// Null after `removeInputsAndOutputs`.
    std::shared_ptr<AVCaptureDevice> inputCamera() const;
    /// Null while it isn't open.
    std::shared_ptr<AVCaptureDevice> microphone() const;
    /// Of the `inputCamera`; `Unspecified` where nobody has told, or without one.
    AVCaptureDevicePosition cameraPosition() const;
    /// Cameras whose place nobody has told count for both.
    static bool isBackFacingCameraPresent();
    /// The same for the other side.
    static bool isFrontFacingCameraPresent();

    /// Nothing while it runs. A camera that has ended is tried again; what stands in the way is told as its end.
    void startCameraCapture();
    /// Afterwards no frame is pushed any more.
    void stopCameraCapture();
    /// Frames come to the delegate, and no further; stills go on.
    void pauseCameraCapture() { m_capturePaused = true; }
    void resumeCameraCapture() { m_capturePaused = false; }
    bool isRunning() const { return m_captureSession->isRunning(); }
    bool capturePaused() const { return m_capturePaused; }
    /// When the capture was started last.
    std::optional<std::chrono::system_clock::time_point> startingCaptureTime() const;
    /// To the camera at the other place or, for want of one, to the next whose place nobody has told; nothing without
    /// one. The old one stays where the new can't be opened, which the outcome tells; where it ends before its first
    /// frame, because somebody else uses it, the old one comes back, and the end handler hears why.
    Outcome rotateCamera();

    std::string captureSessionPreset() const { return m_captureSession->sessionPreset(); }
    /// A camera that runs goes to its mode that is nearest.
    void setCaptureSessionPreset(const std::string& preset) { m_captureSession->setSessionPreset(preset); }
    /// Frames a second; 0, as at first: the camera's choice.
    int frameRate() const { return m_frameRate; }
    /// Below 1: the camera's choice.
    void setFrameRate(int framesPerSecond);

    /// Whether frames come as Y and Cb Cr, and are made red, green and blue on the device, where the rotation is paid
    /// for as well. At first: where the device draws for itself.
    bool captureAsYUV() const { return m_captureAsYUV; }
    void setCaptureAsYUV(bool captureAsYUV);

    /// As which the frames are seen; 0, as at first: as they come.
    UIInterfaceOrientation outputImageOrientation() const { return m_outputImageOrientation; }
    void setOutputImageOrientation(UIInterfaceOrientation orientation);
    bool horizontallyMirrorFrontFacingCamera() const { return m_mirrorsFront; }
    void setHorizontallyMirrorFrontFacingCamera(bool mirror);
    bool horizontallyMirrorRearFacingCamera() const { return m_mirrorsRear; }
    void setHorizontallyMirrorRearFacingCamera(bool mirror);
    /// Sets the orientation by which frames are upright as the device is held now, and mirrors a camera in front, but
    /// no other. `rotateCamera` does it again unless one of the above was set meanwhile, and so does a camera whose
    /// frames begin to tell that they lie otherwise.
    void followDeviceOrientation();
    /// Whether that was the last word on the orientation.
    bool followsDeviceOrientation() const { return m_followsDevice; }
    /// What targets are told, for frames that go on as they come.
    GPUImageRotationMode outputRotation() const;
    /// By what frames are turned on their way into the graph.
    GPUImageRotationMode internalRotation() const;
    /// The size of the last frame as it is seen, upright; zero before the first.
    CGSize outputFrameSize() const;

    /// Opens the microphone; false where that is done already or there is none.
    bool addAudioInputsAndOutputs();
    /// Closes it; false where it isn't open.
    bool removeAudioInputsAndOutputs();
    /// Afterwards nothing comes any more.
    virtual void removeInputsAndOutputs();
    /// With a target the microphone is opened, where it isn't; without one it is closed, where this has opened it.
    /// Where there is no microphone the target isn't told that there will be sound, and `audioEncodingTarget` stays
    /// empty.
    void setAudioEncodingTarget(std::shared_ptr<GPUImageAudioEncodingTarget> target) override;

    using GPUImageOutput::addTarget;
    /// Tells the target the `outputRotation` too.
    void addTarget(const std::shared_ptr<GPUImageInput>& target, int textureLocation) override;

    /// Measures from the sixth frame on, and logs.
    bool runBenchmark() const { return m_runBenchmark; }
    void setRunBenchmark(bool run) { m_runBenchmark = run; }
    /// In milliseconds; none until six frames were counted.
    std::optional<double> averageFrameDurationDuringCapture() const;
    /// Counts anew, from the first frame.
    void resetBenchmarkAverage();

    /// Not held.
    void setDelegate(const std::weak_ptr<GPUImageVideoCameraDelegate>& delegate);
    /// Hears, on a queue of the camera's, that it has ended by itself: unplugged, taken away, its service gone. It runs
    /// where `rotateCamera` was in vain and the camera before is back. Empty: nobody, even of an end that has come but
    /// was not told yet.
    void setEndHandler(AVCaptureSession::EndHandler handler);

    /// Pushes a frame through the graph and waits until that has taken it; nothing while the capture is paused.
    void processVideoSampleBuffer(const CMSampleBuffer& sample);
    /// Hands sound to the `audioEncodingTarget`.
    void processAudioSampleBuffer(const CMSampleBuffer& sample);
    void captureOutput(AVCaptureOutput& output, const CMSampleBuffer& sample) override;

    // For those who watch.

    /// Of the frames that were converted on the device: set anew only when both sides change.
    int imageBufferWidth() const { return m_upload.imageBufferWidth(); }
    int imageBufferHeight() const { return m_upload.imageBufferHeight(); }
    /// Of the last frame, by its tag and levels.
    GPUMatrix3x3 preferredConversion() const { return m_upload.preferredConversion(); }
    bool isFullYUVRange() const { return m_upload.isFullYUVRange(); }

protected:
    GPUImageVideoCamera();

    /// The right to have a frame under way, of which there is one; given back when it is dropped.
    using FrameSlot = std::shared_ptr<void>;
    /// Waits for it. Not on the video processing queue.
    FrameSlot waitForFrameSlot() const;

    template <class Camera>
    static Result<std::shared_ptr<Camera>> opened(const std::string& sessionPreset,
                                                  const std::shared_ptr<AVCaptureDevice>& device)
    {
        const auto camera = std::shared_ptr<Camera>(new Camera);
        if (const Outcome open = camera->open(sessionPreset, device); !open)
            return open.error();
        return camera;
    }
    static std::shared_ptr<AVCaptureDevice> cameraAt(AVCaptureDevicePosition position);
    /// To the session, which is being configured.
    virtual Outcome addOutputs();
    Outcome addOutput(const std::shared_ptr<AVCaptureOutput>& output, const char* logged);
    /// For the frames of all outputs; while the session is being configured.
    virtual void setPixelFormat(CVPixelFormat format);
    /// That all outputs give.
    CVPixelFormat pixelFormat() const;

    /// The delegate hears of the frame, and it goes through the graph; false where it can't be shown. On the video
    /// processing queue.
    bool output(const CMSampleBuffer& sample);
    /// Lets a queue of the camera's end, and what it keeps, without waiting for it: that may wait for whoever drops the
    /// camera.
    static void letGo(std::shared_ptr<DispatchQueue> queue, std::shared_ptr<void> kept = nullptr);

private:
    FrameSlot slotTaken() const;
    Outcome open(const std::string& sessionPreset, const std::shared_ptr<AVCaptureDevice>& device);
    std::weak_ptr<GPUImageVideoCamera> weakSelf();
    void listenForEnd();
    void tellEnd(const Error& error);
    bool changeInput(const std::shared_ptr<AVCaptureDeviceInput>& input,
                     const std::shared_ptr<AVCaptureDeviceInput>& former, bool runs);
    void setFormerInput(std::shared_ptr<AVCaptureDeviceInput> input);
    void goBackToFormerInput();
    void lookAtOrientation();
    std::shared_ptr<AVCaptureDevice> otherCamera() const;
    void updateOrientationSendToTargets();
    void followTurnedFrames();
    bool turnsFrames() const;
    void tellDelegate(const CMSampleBuffer& sample) const;
    bool pushFrame(const CMSampleBuffer& sample);
    void countFrame(double seconds);

    const std::shared_ptr<AVCaptureSession> m_captureSession = std::make_shared<AVCaptureSession>();
    std::shared_ptr<DispatchQueue> m_cameraProcessingQueue;
    std::shared_ptr<DispatchQueue> m_audioProcessingQueue;
    const std::shared_ptr<DispatchSemaphore> m_frameRenderingSemaphore = std::make_shared<DispatchSemaphore>(1);

    std::atomic<int> m_frameRate{0};
    std::atomic<bool> m_runBenchmark{false};
    std::atomic<bool> m_capturePaused{false};
    std::atomic<bool> m_captureAsYUV{false};
    std::atomic<UIInterfaceOrientation> m_outputImageOrientation{};
    std::atomic<bool> m_mirrorsFront{false};
    std::atomic<bool> m_mirrorsRear{false};
    std::atomic<bool> m_followsDevice{false};

    /// While the session is changed by this. Nobody waits for the video processing queue meanwhile.
    std::mutex m_configurationMutex;
    mutable std::mutex m_mutex; ///< for what follows, but for changes within the other one
    std::shared_ptr<AVCaptureDeviceInput> m_videoInput;
    std::shared_ptr<AVCaptureDeviceInput> m_formerInput; ///< before `rotateCamera`, until the present one gives a frame
    std::shared_ptr<AVCaptureVideoDataOutput> m_videoOutput;
    std::shared_ptr<AVCaptureDeviceInput> m_audioInput;
    std::shared_ptr<AVCaptureAudioDataOutput> m_audioOutput;
    bool m_addedAudioInputsDueToEncodingTarget = false;
    std::shared_ptr<GPUImageAudioEncodingTarget> m_soundTarget; ///< as the base class's, for the audio queue
    std::weak_ptr<GPUImageVideoCameraDelegate> m_delegate;
    AVCaptureSession::EndHandler m_endHandler;
    std::optional<std::chrono::system_clock::time_point> m_startingCaptureTime;
    CGSize m_outputFrameSize;

    // On the video processing queue.
    FrameUpload m_upload;
    GPUImageRotationMode m_rotation = kGPUImageNoRotation;
    int m_followedRotation = 0; ///< of the camera, when its orientation was followed last
    bool m_couldShow = true;
    int m_numberOfFramesCaptured = 0;
    double m_totalFrameTimeDuringCapture = 0;
};

} // namespace lamina
