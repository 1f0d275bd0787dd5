#pragma once

#include "gpu/endpoints/GPUImageVideoCamera.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// A camera that also takes stills in its largest size, through the same filters.
class GPUImageStillCamera : public GPUImageVideoCamera {
public:
    static Result<std::shared_ptr<GPUImageStillCamera>>
    make(const std::string& sessionPreset = kAVCaptureSessionPresetPhoto,
         AVCaptureDevicePosition cameraPosition = AVCaptureDevicePosition::Back);
    static Result<std::shared_ptr<GPUImageStillCamera>> make(const std::string& sessionPreset,
                                                             const std::shared_ptr<AVCaptureDevice>& device);

    /// 0 to 1; default 0.8.
    double jpegCompressionQuality() const;
    void setJpegCompressionQuality(double quality);

    /// The code of a second still while one is being taken, as it stands in that error's cause.
    static constexpr int kMaximumStillImageCaptureRequestsExceeded = -11830;

    using FilterChain = std::shared_ptr<GPUImageOutput>;
    /// Takes a still through the graph up to the filter, and hands the filter's frame over as a picture. Handlers are
    /// called once, on a thread that is neither the main nor the video processing queue's.
    void capturePhotoAsImageProcessedUpToFilter(const FilterChain& finalFilterInChain,
                                                std::function<void(Result<UIImage>)> completionHandler);
    void capturePhotoAsImageProcessedUpToFilter(const FilterChain& finalFilterInChain, UIImageOrientation orientation,
                                                std::function<void(Result<UIImage>)> completionHandler);
    using DataHandler = std::function<void(Result<std::vector<std::uint8_t>>)>;
    void capturePhotoAsJPEGProcessedUpToFilter(const FilterChain& finalFilterInChain, DataHandler completionHandler);
    void capturePhotoAsJPEGProcessedUpToFilter(const FilterChain& finalFilterInChain, UIImageOrientation orientation,
                                               DataHandler completionHandler);
    void capturePhotoAsPNGProcessedUpToFilter(const FilterChain& finalFilterInChain, DataHandler completionHandler);
    void capturePhotoAsPNGProcessedUpToFilter(const FilterChain& finalFilterInChain, UIImageOrientation orientation,
                                              DataHandler completionHandler);

    void removeInputsAndOutputs() override;
};

} // namespace lamina
