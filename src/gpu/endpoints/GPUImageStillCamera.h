#pragma once

#include "gpu/core/GPUImageOutput.h"
#include "gpu/endpoints/GPUImageVideoCamera.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/AVCaptureOutput.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// What is known of a still beside its pixels.
struct StillCaptureMetadata {
    IntSize size;       ///< in pixels, as the camera gave it
    CMTime time;        ///< on the steady clock
    std::string camera; ///< its name
    AVCaptureDevicePosition position = AVCaptureDevicePosition::Unspecified;
    YCbCrMatrix matrix = YCbCrMatrix::None;
};

/// A camera that also takes stills in its largest size, through the same filters. Live frames are left out meanwhile;
/// a still goes through while the capture is paused, too.
///
/// Of the stills asked for while one is being taken each fails, its error's cause ending in
/// "(AVFoundationErrorDomain -11830)". Other errors: the camera doesn't run, it has ended, or it gives nothing.
class GPUImageStillCamera : public GPUImageVideoCamera {
public:
    /// A camera at that place, stopped.
    static Result<std::shared_ptr<GPUImageStillCamera>>
    make(const std::string& sessionPreset = kAVCaptureSessionPresetPhoto,
         AVCaptureDevicePosition cameraPosition = AVCaptureDevicePosition::Back);
    /// This camera, for whoever lets the user choose.
    static Result<std::shared_ptr<GPUImageStillCamera>> make(const std::string& sessionPreset,
                                                             const std::shared_ptr<AVCaptureDevice>& device);
    /// A still that is under way fails.
    ~GPUImageStillCamera() override;

    /// 0 to 1; default 0.8.
    double jpegCompressionQuality() const { return m_jpegCompressionQuality; }
    void setJpegCompressionQuality(double quality) { m_jpegCompressionQuality = quality; }

    /// Of the still whose handler is being called; none else.
    std::optional<StillCaptureMetadata> currentCaptureMetadata() const;

    /// The code of a second still while one is being taken, as it stands in that error's cause.
    static constexpr int kMaximumStillImageCaptureRequestsExceeded = -11830;
    /// Whether it is that error.
    static bool isAnotherStillBeingTaken(const Error& error);

    using FilterChain = std::shared_ptr<GPUImageOutput>;
    // Handlers are called once, on a thread that is neither the main nor the video processing queue's; also when the
    // camera is gone meanwhile. One larger than a texture can be is reduced.

    /// Takes a still through the graph, which the filter keeps for `newCGImageFromCurrentlyProcessedOutput`: no live
    /// frame follows it before the handler has returned.
    void capturePhotoProcessedUpToFilter(const FilterChain& finalFilterInChain,
                                         std::function<void(Outcome)> imageOnGPUHandler);
    /// Takes a still through the graph up to the filter, and hands the filter's frame over as a picture, tagged by how
    /// the device is held unless the camera follows that (`followDeviceOrientation`).
    void capturePhotoAsImageProcessedUpToFilter(const FilterChain& finalFilterInChain,
                                                std::function<void(Result<UIImage>)> completionHandler);
    void capturePhotoAsImageProcessedUpToFilter(const FilterChain& finalFilterInChain, UIImageOrientation orientation,
                                                std::function<void(Result<UIImage>)> completionHandler);
    using DataHandler = std::function<void(Result<std::vector<std::uint8_t>>)>;
    /// The same as the bytes of a file, upright.
    void capturePhotoAsJPEGProcessedUpToFilter(const FilterChain& finalFilterInChain, DataHandler completionHandler);
    void capturePhotoAsJPEGProcessedUpToFilter(const FilterChain& finalFilterInChain, UIImageOrientation orientation,
                                               DataHandler completionHandler);
    /// Without loss.
    void capturePhotoAsPNGProcessedUpToFilter(const FilterChain& finalFilterInChain, DataHandler completionHandler);
    void capturePhotoAsPNGProcessedUpToFilter(const FilterChain& finalFilterInChain, UIImageOrientation orientation,
                                              DataHandler completionHandler);
    /// Only says in the log, and to the handler, where to get a still that no filter has seen.
    static void capturePhotoAsSampleBufferWithCompletionHandler(
        const std::function<void(Result<CMSampleBuffer>)>& completionHandler);

    void removeInputsAndOutputs() override;

protected:
    Outcome addOutputs() override;
    void setPixelFormat(CVPixelFormat format) override;

private:
    friend class GPUImageVideoCamera;
    /// With the slot of the still, so that no live frame comes before it is read. Empty where there is an error.
    using StillHandler = std::function<void(const Outcome& outcome, FrameSlot slot)>;
    using ImageHandler = std::function<void(Result<UIImage>)>;

    GPUImageStillCamera();
    std::weak_ptr<GPUImageStillCamera> weakSelf();
    void takeStill(const FilterChain& filter, StillHandler handler);
    void beginStill(const FilterChain& filter, const StillHandler& handler);
    void finishStill(const FilterChain& filter, const Result<CMSampleBuffer>& still, FrameSlot slot,
                     const StillHandler& handler);
    Outcome pushStill(GPUImageOutput* filter, const CMSampleBuffer& still);
    void setMetadata(std::optional<StillCaptureMetadata> metadata);
    void takePicture(const FilterChain& filter, std::optional<UIImageOrientation> orientation, ImageHandler handler);
    void takeFile(const FilterChain& filter, std::optional<UIImageOrientation> orientation, std::string_view uti,
                  DataHandler handler);
    std::optional<UIImageOrientation> ownOrientation() const;

    std::atomic<double> m_jpegCompressionQuality{0.8};
    std::atomic<bool> m_stillIsUnderWay{false};
    mutable std::mutex m_stillMutex; ///< for what follows
    std::shared_ptr<AVCaptureStillImageOutput> m_photoOutput;
    std::optional<StillCaptureMetadata> m_currentCaptureMetadata;
    std::shared_ptr<DispatchQueue> m_stillQueue;
};

} // namespace lamina
