#include "gpu/sources/GPUImagePicture.h"

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/CMTime.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"

#include <algorithm>
#include <cassert>
#include <utility>
#include <vector>

namespace lamina {

namespace {

UIImage orLogged(Result<UIImage> picture)
{
    if (picture)
        return std::move(*picture);
    logError(picture.error().subject + ": " + picture.error().cause);
    return {};
}

/// Leaves nothing of the picture behind, so that its pixels go with who takes them.
CGImage takePixels(UIImage& picture)
{
    CGImage pixels = picture.cgImage();
    picture = {};
    return pixels;
}

} // namespace

GPUImagePicture::GPUImagePicture(UIImage image, PictureUpload how)
    : GPUImagePicture(takePixels(image), how)
{
}

GPUImagePicture::GPUImagePicture(CGImage image, PictureUpload how)
    : m_texture(std::move(image), how)
{
    setShouldSmoothlyScaleOutput(how.smoothlyScaleOutput);
    m_outputFramebuffer = m_texture.framebuffer();
}

std::shared_ptr<GPUImagePicture> GPUImagePicture::makeWithURL(const std::string& path)
{
    return std::make_shared<GPUImagePicture>(orLogged(loadPicture(path)));
}

std::shared_ptr<GPUImagePicture> GPUImagePicture::makeWithData(std::span<const std::uint8_t> bytes)
{
    return std::make_shared<GPUImagePicture>(orLogged(decodePicture(bytes, "picture")));
}

GPUImagePicture::~GPUImagePicture()
{
    // After a push that is under way, and before the texture goes back to the pool.
    GPUImageOutput::removeAllTargets();
}

void GPUImagePicture::processImage()
{
    processImageWithCompletionHandler(nullptr);
}

bool GPUImagePicture::processImageWithCompletionHandler(std::function<void()> completion)
{
    m_hasProcessedImage = true;
    if (!m_imageUpdateSemaphore.tryWait())
        return false;
    // A picture that is shared lives until the push is over; any other waits for the queue in its destructor.
    runAsynchronouslyOnVideoProcessingQueue([this, self = weak_from_this().lock(), completion = std::move(completion)] {
        push();
        m_imageUpdateSemaphore.signal();
        if (completion)
            completion();
    });
    return true;
}

void GPUImagePicture::push()
{
    pushToTargets({.framebuffer = m_texture.framebuffer(), .size = m_texture.pictureSize()});
}

void GPUImagePicture::processImageAndLetGo()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        m_hasProcessedImage = false;
        removeOutputFramebuffer();
        // As a frame of a stream: filters keep stills, to draw from them again.
        PushedFrame last{.size = m_texture.pictureSize(), .time = kCMTimeZero, .givesUpCount = true};
        last.framebuffer = m_texture.release();
        for (const Target& target : targetList()) {
            if (isIgnored(target))
                target.input->setInputFramebuffer(nullptr, target.textureIndex); // had it since it was added
        }
        pushToTargets(std::move(last));
    });
}

void GPUImagePicture::processImageUpToFilter(const std::shared_ptr<GPUImageStage>& filter,
                                             std::function<void(const UIImage& processed)> completion)
{
    assert(filter && completion);
    if (!filter || !completion)
        return;
    filter->useNextFrameForImageCapture();
    processImageWithCompletionHandler(
        [filter, completion = std::move(completion)] { completion(filter->imageFromCurrentFramebuffer()); });
}

void GPUImagePicture::addTarget(const std::shared_ptr<GPUImageInput>& target, int textureLocation)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        const bool isThere = std::ranges::find(targetList(), target, &Target::input) != targetList().end();
        GPUImageOutput::addTarget(target, textureLocation);
        if (!m_hasProcessedImage || !target || isThere)
            return;
        handFrame({.size = m_texture.pictureSize(), .isHandedAlready = true}, false, *target, textureLocation);
        target->newFrameReadyAtTime(kCMTimeIndefinite, textureLocation);
    });
}

void GPUImagePicture::removeAllTargets()
{
    GPUImageOutput::removeAllTargets();
    m_hasProcessedImage = false;
}

void GPUImagePicture::replaceTextureWithSubCGImage(const CGImage& image)
{
    const IntSize size = image ? image.size() : IntSize{};
    replaceTextureWithSubCGImage(image, {0, 0, static_cast<double>(size.width), static_cast<double>(size.height)});
}

void GPUImagePicture::replaceTextureWithSubCGImage(const CGImage& image, CGRect rect)
{
    m_imageUpdateSemaphore.signal();
    m_texture.replace(image, rect);
}

} // namespace lamina
