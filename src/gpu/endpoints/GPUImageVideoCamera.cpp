#include "gpu/endpoints/GPUImageVideoCamera.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/YUVConversion.h"
#include "platform/base/Log.h"
#include "platform/media/AVAssetReader.h"

#include <algorithm>
#include <utility>
#include <vector>

// How a camera is opened, changed and closed.

namespace lamina {

GPUImageVideoCamera::GPUImageVideoCamera()
    : m_cameraProcessingQueue(std::make_shared<DispatchQueue>("com.vx.GPUImage.cameraProcessing"))
    , m_audioProcessingQueue(std::make_shared<DispatchQueue>("com.vx.GPUImage.audioProcessing"))
    , m_upload(kColorConversionMatrix709)
{
}

std::shared_ptr<AVCaptureDevice> GPUImageVideoCamera::cameraAt(AVCaptureDevicePosition position)
{
    return AVCaptureDevice::defaultVideoDevice(position);
}

Result<std::shared_ptr<GPUImageVideoCamera>> GPUImageVideoCamera::make(const std::string& sessionPreset,
                                                                       AVCaptureDevicePosition cameraPosition)
{
    return make(sessionPreset, cameraAt(cameraPosition));
}

Result<std::shared_ptr<GPUImageVideoCamera>> GPUImageVideoCamera::make(const std::string& sessionPreset,
                                                                       const std::shared_ptr<AVCaptureDevice>& device)
{
    return opened<GPUImageVideoCamera>(sessionPreset, device);
}

Outcome GPUImageVideoCamera::open(const std::string& sessionPreset, const std::shared_ptr<AVCaptureDevice>& device)
{
    if (!device)
        return Error{{}, "there is no camera"};
    if (Outcome available = GPUImageContext::availability(); !available)
        return available;
    const auto input = device->makeInput();
    if (!input)
        return input.error();
    listenForEnd();
    m_captureAsYUV = !GPUImageContext::usesKernels();
    m_videoInput = *input;
    m_captureSession->beginConfiguration();
    if (m_captureSession->canAddInput(m_videoInput))
        m_captureSession->addInput(m_videoInput);
    Outcome added = addOutputs();
    setPixelFormat(pixelFormat());
    m_captureSession->setSessionPreset(sessionPreset);
    m_captureSession->commitConfiguration();
    return added;
}

Outcome GPUImageVideoCamera::addOutputs()
{
    m_videoOutput = std::make_shared<AVCaptureVideoDataOutput>();
    m_videoOutput->setAlwaysDiscardsLateVideoFrames(false); // the slot drops them, and the delegate counts on each
    m_videoOutput->setSampleBufferDelegate(weakSelf(), m_cameraProcessingQueue);
    return addOutput(m_videoOutput, "video");
}

Outcome GPUImageVideoCamera::addOutput(const std::shared_ptr<AVCaptureOutput>& output, const char* logged)
{
    if (!m_captureSession->canAddOutput(output)) {
        const std::string cause = std::string("Couldn't add ") + logged + " output";
        logError(cause);
        return Error{{}, cause};
    }
    m_captureSession->addOutput(output);
    return success();
}

GPUImageVideoCamera::~GPUImageVideoCamera()
{
    m_captureSession->setEndHandler({});
    m_captureSession->stopRunning();
    GPUImageVideoCamera::removeInputsAndOutputs();
    letGo(std::move(m_cameraProcessingQueue));
    letGo(std::move(m_audioProcessingQueue));
}

void GPUImageVideoCamera::letGo(std::shared_ptr<DispatchQueue> queue, std::shared_ptr<void> kept)
{
    DispatchQueue& last = *queue;
    last.async([queue = std::move(queue), kept = std::move(kept)] {});
}

std::weak_ptr<GPUImageVideoCamera> GPUImageVideoCamera::weakSelf()
{
    return std::static_pointer_cast<GPUImageVideoCamera>(shared_from_this());
}

std::shared_ptr<AVCaptureDevice> GPUImageVideoCamera::inputCamera() const
{
    const std::scoped_lock lock(m_mutex);
    return m_videoInput ? m_videoInput->device() : nullptr;
}

std::shared_ptr<AVCaptureDevice> GPUImageVideoCamera::microphone() const
{
    const std::scoped_lock lock(m_mutex);
    return m_audioInput ? m_audioInput->device() : nullptr;
}

AVCaptureDevicePosition GPUImageVideoCamera::cameraPosition() const
{
    const std::shared_ptr<AVCaptureDevice> camera = inputCamera();
    return camera ? camera->position() : AVCaptureDevicePosition::Unspecified;
}

bool GPUImageVideoCamera::isBackFacingCameraPresent()
{
    return cameraAt(AVCaptureDevicePosition::Back) != nullptr;
}

bool GPUImageVideoCamera::isFrontFacingCameraPresent()
{
    return cameraAt(AVCaptureDevicePosition::Front) != nullptr;
}

void GPUImageVideoCamera::startCameraCapture()
{
    if (isRunning())
        return;
    {
        const std::scoped_lock lock(m_mutex);
        m_startingCaptureTime = std::chrono::system_clock::now();
    }
    m_captureSession->startRunning();
}

void GPUImageVideoCamera::stopCameraCapture()
{
    {
        const std::scoped_lock configuration(m_configurationMutex);
        setFormerInput(nullptr); // which would be started
        m_captureSession->stopRunning();
    }
    runSynchronouslyOnVideoProcessingQueue([] {}); // one that was under way has gone; later ones see that it is over
}

std::optional<std::chrono::system_clock::time_point> GPUImageVideoCamera::startingCaptureTime() const
{
    const std::scoped_lock lock(m_mutex);
    return m_startingCaptureTime;
}

std::shared_ptr<AVCaptureDevice> GPUImageVideoCamera::otherCamera() const
{
    const std::shared_ptr<AVCaptureDevice> present = inputCamera();
    if (!present)
        return nullptr;
    auto all = AVCaptureDevice::devices();
    const auto self = std::ranges::find(all, present->uniqueID(), &AVCaptureDevice::uniqueID);
    if (self != all.end())
        std::ranges::rotate(all, self + 1); // the next after it comes first
    const auto found = [&](AVCaptureDevicePosition position) -> std::shared_ptr<AVCaptureDevice> {
        for (const auto& each : all) {
            if (each->position() == position && each->uniqueID() != present->uniqueID())
                return each;
        }
        return nullptr;
    };
    const bool isInFront = present->position() == AVCaptureDevicePosition::Front;
    const auto opposite = found(isInFront ? AVCaptureDevicePosition::Back : AVCaptureDevicePosition::Front);
    return opposite ? opposite : found(AVCaptureDevicePosition::Unspecified);
}

Outcome GPUImageVideoCamera::rotateCamera()
{
    const std::shared_ptr<AVCaptureDevice> other = otherCamera();
    if (!other)
        return success();
    const auto input = other->makeInput();
    if (!input)
        return input.error();
    {
        const std::scoped_lock configuration(m_configurationMutex);
        if (!m_videoInput)
            return success();
        if (!changeInput(*input, m_videoInput, isRunning()))
            return Error{other->localizedName(), "the camera can’t be used now"};
    }
    lookAtOrientation();
    return success();
}

/// Within the configuration's mutex: to another input, from which it goes back to `former` if nothing comes; false
/// where the session doesn't take it, and keeps the one that it has.
bool GPUImageVideoCamera::changeInput(const std::shared_ptr<AVCaptureDeviceInput>& input,
                                      const std::shared_ptr<AVCaptureDeviceInput>& former, bool runs)
{
    setFormerInput(nullptr);
    m_captureSession->beginConfiguration();
    m_captureSession->removeInput(m_videoInput);
    const bool canAdd = m_captureSession->canAddInput(input);
    m_captureSession->addInput(canAdd ? input : m_videoInput);
    if (canAdd && former) {
        // After the last frame of the one, before the first of the other.
        m_cameraProcessingQueue->async([weak = weakSelf(), former] {
            if (const auto camera = weak.lock())
                camera->setFormerInput(former);
        });
    }
    if (runs)
        m_captureSession->startRunning(); // without an input it has stopped
    m_captureSession->commitConfiguration();
    const std::scoped_lock lock(m_mutex);
    if (canAdd)
        m_videoInput = input;
    return canAdd;
}

void GPUImageVideoCamera::setFormerInput(std::shared_ptr<AVCaptureDeviceInput> input)
{
    const std::scoped_lock lock(m_mutex);
    m_formerInput.swap(input);
}

/// Where the present camera has ended before its first frame.
void GPUImageVideoCamera::goBackToFormerInput()
{
    {
        const std::scoped_lock configuration(m_configurationMutex);
        std::shared_ptr<AVCaptureDeviceInput> former;
        {
            const std::scoped_lock lock(m_mutex);
            former.swap(m_formerInput);
        }
        if (!former || !m_videoInput || isRunning())
            return;
        changeInput(former, nullptr, true);
    }
    lookAtOrientation();
}

void GPUImageVideoCamera::lookAtOrientation()
{
    if (m_followsDevice)
        followDeviceOrientation();
    else
        updateOrientationSendToTargets();
}

void GPUImageVideoCamera::setFrameRate(int framesPerSecond)
{
    m_frameRate = std::max(framesPerSecond, 0);
    m_captureSession->setFrameRate(m_frameRate);
}

CVPixelFormat GPUImageVideoCamera::pixelFormat() const
{
    return m_captureAsYUV ? CVPixelFormat::BiPlanar420VideoRange : CVPixelFormat::BGRA;
}

void GPUImageVideoCamera::setPixelFormat(CVPixelFormat format)
{
    if (m_videoOutput)
        m_videoOutput->setPixelFormat(format);
}

void GPUImageVideoCamera::setCaptureAsYUV(bool captureAsYUV)
{
    {
        const std::scoped_lock configuration(m_configurationMutex);
        m_captureAsYUV = captureAsYUV;
        m_captureSession->beginConfiguration();
        setPixelFormat(pixelFormat());
        m_captureSession->commitConfiguration();
    }
    updateOrientationSendToTargets();
}

bool GPUImageVideoCamera::addAudioInputsAndOutputs()
{
    const std::scoped_lock configuration(m_configurationMutex);
    const std::shared_ptr<AVCaptureDevice> microphone = AVCaptureDevice::defaultDevice(AVTrackMediaType::Audio);
    if (m_audioOutput || !microphone)
        return false;
    const auto input = microphone->makeInput();
    if (!input) {
        logWarning(input.error().message());
        return false;
    }
    const auto output = std::make_shared<AVCaptureAudioDataOutput>();
    output->setSampleBufferDelegate(weakSelf(), m_audioProcessingQueue);
    m_captureSession->beginConfiguration();
    if (m_captureSession->canAddInput(*input))
        m_captureSession->addInput(*input);
    const Outcome added = addOutput(output, "audio");
    m_captureSession->commitConfiguration();
    const std::scoped_lock lock(m_mutex);
    m_audioInput = *input;
    m_audioOutput = added ? output : nullptr;
    return true;
}

bool GPUImageVideoCamera::removeAudioInputsAndOutputs()
{
    const std::scoped_lock configuration(m_configurationMutex);
    if (!m_audioOutput)
        return false;
    m_captureSession->beginConfiguration();
    m_captureSession->removeInput(m_audioInput);
    m_captureSession->removeOutput(m_audioOutput);
    m_captureSession->commitConfiguration();
    const std::scoped_lock lock(m_mutex);
    m_audioInput.reset();
    m_audioOutput.reset();
    return true;
}

void GPUImageVideoCamera::removeInputsAndOutputs()
{
    removeAudioInputsAndOutputs();
    const std::scoped_lock configuration(m_configurationMutex);
    m_captureSession->beginConfiguration();
    if (m_videoInput)
        m_captureSession->removeInput(m_videoInput);
    if (m_videoOutput) {
        m_videoOutput->setSampleBufferDelegate({}, nullptr);
        m_captureSession->removeOutput(m_videoOutput);
    }
    m_captureSession->commitConfiguration();
    const std::scoped_lock lock(m_mutex);
    m_videoInput.reset();
    m_formerInput.reset();
    m_videoOutput.reset();
}

void GPUImageVideoCamera::setAudioEncodingTarget(std::shared_ptr<GPUImageAudioEncodingTarget> target)
{
    const bool added = target && addAudioInputsAndOutputs();
    bool removes = false;
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_audioOutput)
            target.reset();
        removes = !target && m_addedAudioInputsDueToEncodingTarget;
        m_addedAudioInputsDueToEncodingTarget = target && (added || m_addedAudioInputsDueToEncodingTarget);
    }
    if (removes)
        removeAudioInputsAndOutputs();
    GPUImageOutput::setAudioEncodingTarget(target); // before sound comes to it
    const std::scoped_lock lock(m_mutex);
    m_soundTarget = std::move(target);
}

void GPUImageVideoCamera::setDelegate(const std::weak_ptr<GPUImageVideoCameraDelegate>& delegate)
{
    const std::scoped_lock lock(m_mutex);
    m_delegate = delegate;
}

void GPUImageVideoCamera::setEndHandler(AVCaptureSession::EndHandler handler)
{
    const std::scoped_lock lock(m_mutex);
    m_endHandler.swap(handler);
}

/// Not on the device's thread, for which who stops the camera waits.
void GPUImageVideoCamera::listenForEnd()
{
    m_captureSession->setEndHandler(
        [weak = weakSelf(), queue = std::weak_ptr(m_cameraProcessingQueue)](const Error& error) {
            if (const auto own = queue.lock()) {
                own->async([weak, error] {
                    if (const auto camera = weak.lock())
                        camera->tellEnd(error);
                });
            }
        });
}

void GPUImageVideoCamera::tellEnd(const Error& error)
{
    goBackToFormerInput();
    AVCaptureSession::EndHandler handler;
    {
        const std::scoped_lock lock(m_mutex);
        handler = m_endHandler;
    }
    if (handler)
        handler(error);
}

} // namespace lamina
