// A filter as a function from picture to picture.

#include "gpu/core/GPUImageStage.h"
#include "gpu/core/PictureTexture.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/CMTime.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <utility>

namespace lamina {

CGImage GPUImageOutput::newCGImageByFilteringCGImage(const CGImage& image)
{
    auto* stage = dynamic_cast<GPUImageStage*>(this);
    if (!stage || !image || !valueFromVideoProcessingQueue([&] { return stage->canRender(); }))
        return {};
    const PictureTexture picture(image, PictureUpload::as(stage->alphaForm()));
    useNextFrameForImageCapture();
    // The push has its turn first: what others spend on the queue is not counted as waiting for the frame.
    const int slot = valueFromVideoProcessingQueue([&] {
        const int next = stage->nextAvailableTextureIndex();
        handFrame({.framebuffer = picture.framebuffer(), .size = picture.pictureSize()}, false, *stage, next);
        stage->newFrameReadyAtTime(kCMTimeIndefinite, next);
        return next;
    });
    CGImage filtered = newCGImageFromCurrentlyProcessedOutput();
    runSynchronouslyOnVideoProcessingQueue([&] {
        freeSlot(*stage, slot);
        stage->endProcessing();
    });
    return filtered;
}

UIImage GPUImageOutput::imageByFilteringImage(const UIImage& image)
{
    CGImage filtered = newCGImageByFilteringImage(image);
    return filtered ? UIImage(std::move(filtered), image.scale(), image.imageOrientation()) : UIImage();
}

} // namespace lamina
