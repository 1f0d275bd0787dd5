// A filter as a function from picture to picture. The base class declares it; it stands here because it needs a source.

#include "gpu/core/GPUImageStage.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/sources/GPUImagePicture.h"

namespace lamina {

CGImage GPUImageOutput::newCGImageByFilteringCGImage(const CGImage& image)
{
    auto* stage = dynamic_cast<GPUImageStage*>(this);
    if (!stage || !image || !valueFromVideoProcessingQueue([&] { return stage->canRender(); }))
        return {};
    // A filter that nobody shares is a target too, for the length of this call.
    const std::shared_ptr<GPUImageInput> self(weak_from_this().lock(), stage);
    const auto picture = std::make_shared<GPUImagePicture>(image);
    useNextFrameForImageCapture();
    picture->addTarget(self);
    picture->processImage();
    // The push has its turn first: what others spend on the queue is not counted as waiting for the frame.
    runSynchronouslyOnVideoProcessingQueue([] {});
    CGImage filtered = newCGImageFromCurrentlyProcessedOutput();
    picture->removeTarget(self);
    return filtered;
}

UIImage GPUImageOutput::imageByFilteringImage(const UIImage& image)
{
    CGImage filtered = newCGImageByFilteringImage(image);
    return filtered ? UIImage(std::move(filtered), image.scale(), image.imageOrientation()) : UIImage();
}

} // namespace lamina
