#include "gpu/endpoints/GPUImageStillCamera.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/FrameUpload.h"
#include "platform/base/Causes.h"
#include "platform/base/Log.h"
#include "platform/image/codecs/ImageSaving.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/drawing/Resampling.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelKernels.h"
#include "platform/media/PixelBufferImage.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

constexpr const char* kNotRunning = "the camera isn’t running";

/// How the cause of an error with that code ends.
std::string codeOfAnotherStill()
{
    return " (AVFoundationErrorDomain " +
           std::to_string(GPUImageStillCamera::kMaximumStillImageCaptureRequestsExceeded) + ")";
}

/// The size in which the device can take the frame.
IntSize fittingSize(IntSize frame)
{
    const CGSize fitted =
        GPUImageContext::sizeThatFitsWithinATextureForSize({double(frame.width), double(frame.height)});
    return {std::max(static_cast<int>(fitted.width), 1), std::max(static_cast<int>(fitted.height), 1)};
}

/// The frame as one of blue, green and red of that size; null when memory is short.
std::shared_ptr<CVPixelBuffer> reduced(const CVPixelBuffer& frame, IntSize size)
{
    const CGImage picture = resampled(imageOfPixelBuffer(frame), size);
    const auto copy = picture ? CVPixelBuffer::make(size, CVPixelFormat::BGRA) : nullptr;
    if (!copy)
        return nullptr;
    const CVPixelBuffer::Plane& out = copy->planes().front();
    for (int y = 0; y < size.height; ++y)
        kernels::reorder(picture.row(y), static_cast<std::size_t>(size.width), {2, 1, 0, 3}, 0,
                         out.bytes + static_cast<std::size_t>(y) * out.bytesPerRow);
    return copy;
}

/// The still as the device can take it.
CMSampleBuffer fitting(CMSampleBuffer still)
{
    const IntSize size = still.imageBuffer->size();
    const IntSize fitted = fittingSize(size);
    if (fitted == size)
        return still;
    still.imageBuffer = reduced(*still.imageBuffer, fitted);
    still.duration = CMTime::make(1, 30);
    return still;
}

} // namespace

GPUImageStillCamera::GPUImageStillCamera()
    : m_stillQueue(std::make_shared<DispatchQueue>("com.vx.GPUImage.stillCapture"))
{
}

Result<std::shared_ptr<GPUImageStillCamera>> GPUImageStillCamera::make(const std::string& sessionPreset,
                                                                       AVCaptureDevicePosition cameraPosition)
{
    return make(sessionPreset, cameraAt(cameraPosition));
}

Result<std::shared_ptr<GPUImageStillCamera>> GPUImageStillCamera::make(const std::string& sessionPreset,
                                                                       const std::shared_ptr<AVCaptureDevice>& device)
{
    return opened<GPUImageStillCamera>(sessionPreset, device);
}

GPUImageStillCamera::~GPUImageStillCamera()
{
    captureSession()->stopRunning();
    // A handler that runs on the output's queue may wait for whoever drops the camera.
    std::shared_ptr<void> output = m_photoOutput;
    GPUImageStillCamera::removeInputsAndOutputs();
    letGo(std::move(m_stillQueue), std::move(output));
}

std::weak_ptr<GPUImageStillCamera> GPUImageStillCamera::weakSelf()
{
    return std::static_pointer_cast<GPUImageStillCamera>(shared_from_this());
}

Outcome GPUImageStillCamera::addOutputs()
{
    if (Outcome added = GPUImageVideoCamera::addOutputs(); !added)
        return added;
    m_photoOutput = std::make_shared<AVCaptureStillImageOutput>();
    return addOutput(m_photoOutput, "still image");
}

void GPUImageStillCamera::setPixelFormat(CVPixelFormat format)
{
    GPUImageVideoCamera::setPixelFormat(format);
    const std::scoped_lock lock(m_stillMutex);
    if (m_photoOutput)
        m_photoOutput->setPixelFormat(format);
}

void GPUImageStillCamera::removeInputsAndOutputs()
{
    std::shared_ptr<AVCaptureStillImageOutput> output;
    {
        const std::scoped_lock lock(m_stillMutex);
        output.swap(m_photoOutput);
    }
    if (output)
        captureSession()->removeOutput(output);
    GPUImageVideoCamera::removeInputsAndOutputs();
}

std::optional<StillCaptureMetadata> GPUImageStillCamera::currentCaptureMetadata() const
{
    const std::scoped_lock lock(m_stillMutex);
    return m_currentCaptureMetadata;
}

void GPUImageStillCamera::setMetadata(std::optional<StillCaptureMetadata> metadata)
{
    const std::scoped_lock lock(m_stillMutex);
    m_currentCaptureMetadata = std::move(metadata);
}

bool GPUImageStillCamera::isAnotherStillBeingTaken(const Error& error)
{
    return error.cause.ends_with(codeOfAnotherStill());
}

void GPUImageStillCamera::takeStill(const FilterChain& filter, StillHandler handler)
{
    m_stillQueue->async([weak = weakSelf(), filter, handler = std::move(handler)] {
        if (const auto camera = weak.lock())
            camera->beginStill(filter, handler);
        else
            handler(Error{{}, cause::kCancelled}, nullptr);
    });
}

/// On the still queue, which doesn't wait for the camera: the next still finds that this one is under way.
void GPUImageStillCamera::beginStill(const FilterChain& filter, const StillHandler& handler)
{
    std::shared_ptr<AVCaptureStillImageOutput> output;
    {
        const std::scoped_lock lock(m_stillMutex);
        output = m_photoOutput;
    }
    if (!output || !isRunning())
        return handler(Error{{}, kNotRunning}, nullptr);
    if (output->isCapturingStillImage() || m_stillIsUnderWay.exchange(true))
        return handler(Error{{}, "another still is being taken" + codeOfAnotherStill()}, nullptr);
    output->captureStillImageAsynchronously(
        [weak = weakSelf(), filter, handler, slot = waitForFrameSlot()](const Result<CMSampleBuffer>& still) mutable {
            if (const auto camera = weak.lock())
                camera->finishStill(filter, still, std::move(slot), handler);
            else
                handler(still ? Error{{}, cause::kCancelled} : still.error(), nullptr);
        });
}

void GPUImageStillCamera::finishStill(const FilterChain& filter, const Result<CMSampleBuffer>& still, FrameSlot slot,
                                      const StillHandler& handler)
{
    const Outcome pushed = still ? pushStill(filter.get(), *still) : Outcome(still.error());
    m_stillIsUnderWay = false; // the handler may take another one
    if (!pushed)
        slot.reset();
    handler(pushed, std::move(slot));
    setMetadata(std::nullopt);
}

Outcome GPUImageStillCamera::pushStill(GPUImageOutput* filter, const CMSampleBuffer& still)
{
    const std::shared_ptr<AVCaptureDevice> camera = inputCamera();
    setMetadata(StillCaptureMetadata{still.imageBuffer->size(), still.presentationTime,
                                     camera ? camera->localizedName() : std::string(), cameraPosition(),
                                     still.imageBuffer->matrix()});
    const CMSampleBuffer fitted = fitting(still);
    if (!fitted.imageBuffer)
        return Error{{}, cause::kNoMemory};
    Outcome pushed = Error{{}, kNotRunning}; // what is stopped meanwhile pushes nothing any more
    runSynchronouslyOnVideoProcessingQueue([&] {
        if (!isRunning())
            return;
        if (filter)
            filter->useNextFrameForImageCapture();
        pushed = output(fitted) ? success() : Error{{}, cause::kNoMemory};
    });
    return pushed;
}

void GPUImageStillCamera::capturePhotoProcessedUpToFilter(const FilterChain& finalFilterInChain,
                                                          std::function<void(Outcome)> imageOnGPUHandler)
{
    takeStill(finalFilterInChain,
              [handler = std::move(imageOnGPUHandler)](const Outcome& outcome, const FrameSlot&) { handler(outcome); });
}

void GPUImageStillCamera::takePicture(const FilterChain& filter, std::optional<UIImageOrientation> orientation,
                                      ImageHandler handler)
{
    takeStill(filter, [filter, orientation, handler = std::move(handler)](const Outcome& outcome, FrameSlot slot) {
        if (!outcome)
            return handler(outcome.error());
        UIImage picture;
        if (filter)
            picture = orientation ? filter->imageFromCurrentFramebufferWithOrientation(*orientation)
                                  : filter->imageFromCurrentFramebuffer();
        slot.reset();
        handler(picture ? Result(std::move(picture)) : Error{{}, "the filter gives no picture"});
    });
}

/// None: as the filter tells. A picture that is upright already is not to be turned again.
std::optional<UIImageOrientation> GPUImageStillCamera::ownOrientation() const
{
    return followsDeviceOrientation() ? std::optional(UIImageOrientation::Up) : std::nullopt;
}

void GPUImageStillCamera::capturePhotoAsImageProcessedUpToFilter(const FilterChain& finalFilterInChain,
                                                                 ImageHandler completionHandler)
{
    takePicture(finalFilterInChain, ownOrientation(), std::move(completionHandler));
}

void GPUImageStillCamera::capturePhotoAsImageProcessedUpToFilter(const FilterChain& finalFilterInChain,
                                                                 UIImageOrientation orientation,
                                                                 ImageHandler completionHandler)
{
    takePicture(finalFilterInChain, orientation, std::move(completionHandler));
}

void GPUImageStillCamera::takeFile(const FilterChain& filter, std::optional<UIImageOrientation> orientation,
                                   std::string_view uti, DataHandler handler)
{
    ImageSavingOptions options;
    options.uti = uti;
    options.quality = m_jpegCompressionQuality;
    takePicture(filter, orientation, [options, handler = std::move(handler)](const Result<UIImage>& picture) {
        handler(picture ? encodeImage(*picture, options, {}) : picture.error());
    });
}

void GPUImageStillCamera::capturePhotoAsJPEGProcessedUpToFilter(const FilterChain& finalFilterInChain,
                                                                DataHandler completionHandler)
{
    takeFile(finalFilterInChain, ownOrientation(), kUTTypeJPEG, std::move(completionHandler));
}

void GPUImageStillCamera::capturePhotoAsJPEGProcessedUpToFilter(const FilterChain& finalFilterInChain,
                                                                UIImageOrientation orientation,
                                                                DataHandler completionHandler)
{
    takeFile(finalFilterInChain, orientation, kUTTypeJPEG, std::move(completionHandler));
}

void GPUImageStillCamera::capturePhotoAsPNGProcessedUpToFilter(const FilterChain& finalFilterInChain,
                                                               DataHandler completionHandler)
{
    takeFile(finalFilterInChain, ownOrientation(), kUTTypePNG, std::move(completionHandler));
}

void GPUImageStillCamera::capturePhotoAsPNGProcessedUpToFilter(const FilterChain& finalFilterInChain,
                                                               UIImageOrientation orientation,
                                                               DataHandler completionHandler)
{
    takeFile(finalFilterInChain, orientation, kUTTypePNG, std::move(completionHandler));
}

void GPUImageStillCamera::capturePhotoAsSampleBufferWithCompletionHandler(
    const std::function<void(Result<CMSampleBuffer>)>& completionHandler)
{
    const std::string advice = "If you want to use the method capturePhotoAsSampleBufferWithCompletionHandler:, ask "
                               "the session's still image output: this camera's stills go through filters";
    logWarning(advice);
    if (completionHandler)
        completionHandler(Error{{}, advice});
}

} // namespace lamina
