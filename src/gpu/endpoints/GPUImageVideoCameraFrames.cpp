#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageInput.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/CameraOrientation.h"
#include "gpu/endpoints/GPUImageVideoCamera.h"
#include "platform/base/Clock.h"
#include "platform/base/Log.h"
#include "platform/base/NumberText.h"
#include "platform/base/UIDevice.h"
#include "platform/media/AVAssetReader.h"

#include <memory>
#include <mutex>
#include <utility>

// How a camera's frames and its sound come into the graph.

namespace lamina {

namespace {

/// The first ones wait for programs and memory.
constexpr int kFramesLeftOutOfBenchmark = 5;

} // namespace

GPUImageVideoCamera::FrameSlot GPUImageVideoCamera::slotTaken() const
{
    return {m_frameRenderingSemaphore.get(), [semaphore = m_frameRenderingSemaphore](void*) { semaphore->signal(); }};
}

GPUImageVideoCamera::FrameSlot GPUImageVideoCamera::waitForFrameSlot() const
{
    m_frameRenderingSemaphore->wait();
    return slotTaken();
}

void GPUImageVideoCamera::captureOutput(AVCaptureOutput& output, const CMSampleBuffer& sample)
{
    if (!isRunning())
        return;
    if (output.mediaType() == AVTrackMediaType::Audio)
        return processAudioSampleBuffer(sample);
    setFormerInput(nullptr); // this camera works
    if (!m_frameRenderingSemaphore->tryWait())
        return;
    runAsynchronouslyOnVideoProcessingQueue([weak = weakSelf(), sample, slot = slotTaken()]() mutable {
        const std::shared_ptr<GPUImageVideoCamera> camera = weak.lock();
        if (camera && camera->isRunning()) {
            camera->tellDelegate(sample);
            camera->processVideoSampleBuffer(sample);
        }
        slot.reset(); // before the camera, whose end may wait for a still that waits for it
    });
}

bool GPUImageVideoCamera::output(const CMSampleBuffer& sample)
{
    tellDelegate(sample);
    return pushFrame(sample);
}

void GPUImageVideoCamera::tellDelegate(const CMSampleBuffer& sample) const
{
    std::shared_ptr<GPUImageVideoCameraDelegate> delegate;
    {
        const std::scoped_lock lock(m_mutex);
        delegate = m_delegate.lock();
    }
    if (delegate)
        delegate->willOutputSampleBuffer(sample);
}

void GPUImageVideoCamera::processVideoSampleBuffer(const CMSampleBuffer& sample)
{
    if (!m_capturePaused)
        runSynchronouslyOnVideoProcessingQueue([&] { pushFrame(sample); });
}

bool GPUImageVideoCamera::pushFrame(const CMSampleBuffer& sample)
{
    const double started = Clock::shared()->now();
    if (!sample.imageBuffer)
        return false;
    followTurnedFrames();
    const CVPixelBuffer& frame = *sample.imageBuffer;
    const bool turns = FrameUpload::turnsFrames(frame.pixelFormat());
    std::shared_ptr<GPUImageFramebuffer> framebuffer =
        m_upload.framebufferOf(frame, outputTextureOptions(), turns ? m_rotation : kGPUImageNoRotation);
    const bool couldShow = std::exchange(m_couldShow, framebuffer != nullptr);
    if (!framebuffer) {
        if (couldShow) // once, not thirty times a second
            logError("A frame of the camera could not be shown");
        return false;
    }
    const CGSize seen = sizeRotatedBy(m_rotation, FrameUpload::sizeOf(frame));
    {
        const std::scoped_lock lock(m_mutex);
        m_outputFrameSize = seen;
    }
    pushToTargets({.framebuffer = std::move(framebuffer),
                   .size = turns ? seen : FrameUpload::sizeOf(frame),
                   .time = sample.presentationTime,
                   .rotation = turns ? kGPUImageNoRotation : m_rotation,
                   .leavesOutDisabled = true,
                   .givesUpCount = true});
    if (m_runBenchmark)
        countFrame(Clock::shared()->now() - started);
    return true;
}

void GPUImageVideoCamera::countFrame(double seconds)
{
    if (++m_numberOfFramesCaptured <= kFramesLeftOutOfBenchmark)
        return;
    m_totalFrameTimeDuringCapture += seconds;
    logInfo("Average frame time : " + fixedText(averageFrameDurationDuringCapture().value_or(0), 6) + " ms");
    logInfo("Current frame time : " + fixedText(1000 * seconds, 6) + " ms");
}

std::optional<double> GPUImageVideoCamera::averageFrameDurationDuringCapture() const
{
    return valueFromVideoProcessingQueue([this]() -> std::optional<double> {
        const int counted = m_numberOfFramesCaptured - kFramesLeftOutOfBenchmark;
        return counted > 0 ? std::optional(1000 * m_totalFrameTimeDuringCapture / counted) : std::nullopt;
    });
}

void GPUImageVideoCamera::resetBenchmarkAverage()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        m_numberOfFramesCaptured = 0;
        m_totalFrameTimeDuringCapture = 0;
    });
}

CGSize GPUImageVideoCamera::outputFrameSize() const
{
    const std::scoped_lock lock(m_mutex);
    return m_outputFrameSize;
}

void GPUImageVideoCamera::processAudioSampleBuffer(const CMSampleBuffer& sample)
{
    std::shared_ptr<GPUImageAudioEncodingTarget> target;
    {
        const std::scoped_lock lock(m_mutex);
        target = m_soundTarget;
    }
    if (target)
        target->processAudioBuffer(sample);
}

void GPUImageVideoCamera::addTarget(const std::shared_ptr<GPUImageInput>& target, int textureLocation)
{
    if (!target)
        return;
    runSynchronouslyOnVideoProcessingQueue([&] {
        GPUImageOutput::addTarget(target, textureLocation);
        target->setInputRotation(outputRotation(), textureLocation);
    });
}

void GPUImageVideoCamera::setOutputImageOrientation(UIInterfaceOrientation orientation)
{
    runSynchronouslyOnVideoProcessingQueue([&] { // between frames, which may follow the device
        m_followsDevice = false;
        m_outputImageOrientation = orientation;
        updateOrientationSendToTargets();
    });
}

void GPUImageVideoCamera::setHorizontallyMirrorFrontFacingCamera(bool mirror)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_followsDevice = false;
        m_mirrorsFront = mirror;
        updateOrientationSendToTargets();
    });
}

void GPUImageVideoCamera::setHorizontallyMirrorRearFacingCamera(bool mirror)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_followsDevice = false;
        m_mirrorsRear = mirror;
        updateOrientationSendToTargets();
    });
}

void GPUImageVideoCamera::followDeviceOrientation()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        m_followsDevice = true;
        m_mirrorsFront = true;
        m_mirrorsRear = false;
        if (const std::shared_ptr<AVCaptureDevice> camera = inputCamera()) {
            m_followedRotation = camera->rotation();
            m_outputImageOrientation =
                orientationOfUprightFrames(camera->position(), m_followedRotation, UIDevice::orientation());
        }
        updateOrientationSendToTargets();
    });
}

/// A camera may learn only from its frames how they lie.
void GPUImageVideoCamera::followTurnedFrames()
{
    if (!m_followsDevice)
        return;
    if (const std::shared_ptr<AVCaptureDevice> camera = inputCamera();
        camera && camera->rotation() != m_followedRotation)
        followDeviceOrientation();
}

/// Frames that are turned on their way are told as they lie then.
bool GPUImageVideoCamera::turnsFrames() const
{
    return FrameUpload::turnsFrames(pixelFormat());
}

GPUImageRotationMode GPUImageVideoCamera::outputRotation() const
{
    return valueFromVideoProcessingQueue([this] { return turnsFrames() ? kGPUImageNoRotation : m_rotation; });
}

GPUImageRotationMode GPUImageVideoCamera::internalRotation() const
{
    return valueFromVideoProcessingQueue([this] { return turnsFrames() ? m_rotation : kGPUImageNoRotation; });
}

void GPUImageVideoCamera::updateOrientationSendToTargets()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        const AVCaptureDevicePosition position = cameraPosition();
        const bool mirrored = position == AVCaptureDevicePosition::Front ? m_mirrorsFront : m_mirrorsRear;
        m_rotation = rotationForCamera(position, mirrored, m_outputImageOrientation);
        for (const Target& target : targetList())
            target.input->setInputRotation(outputRotation(), target.textureIndex);
    });
}

} // namespace lamina
