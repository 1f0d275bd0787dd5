#include "gpu/sources/GPUImagePicture.h"

#include "gpu/core/GLErrors.h"
#include "gpu/core/GLTextureFormat.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/sources/PictureBytes_p.h"
#include "platform/base/Log.h"
#include "platform/image/codecs/PictureDecoding.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <utility>

namespace lamina {

namespace {

CGSize sizeOf(const CGImage& image)
{
    return image ? CGSize{static_cast<double>(image.width()), static_cast<double>(image.height())} : CGSize{};
}

IntSize wholePixels(CGSize size)
{
    return {static_cast<int>(size.width), static_cast<int>(size.height)};
}

/// The fit into the texture limit leaves less than a pixel of a long thin picture; it keeps one.
CGSize neverThinner(CGSize fitting, CGSize whole)
{
    return {std::max(fitting.width, std::min(whole.width, 1.0)), std::max(fitting.height, std::min(whole.height, 1.0))};
}

double nextPowerOfTwo(double side)
{
    return side > 0 ? std::exp2(std::ceil(std::log2(side))) : 0;
}

/// A copy of the bytes that can be changed; empty when memory is short.
PixelBuffer copyOf(std::span<const std::uint8_t> bytes)
{
    PixelBuffer copy = PixelBuffer::allocate(bytes.size());
    if (copy)
        std::memcpy(copy.data(), bytes.data(), bytes.size());
    return copy;
}

/// Divides by alpha where the bytes are premultiplied.
PixelBuffer dividedByAlpha(const PictureBytes& bytes)
{
    PixelBuffer copy = copyOf(bytes.pixels.bytes());
    if (copy) {
        removePremultiplication({reinterpret_cast<std::uint32_t*>(copy.data()), copy.size() / 4}, bytes.alphaFirst,
                                bytes.littleEndian);
    }
    return copy;
}

UIImage orLogged(Result<UIImage> picture)
{
    if (picture)
        return std::move(*picture);
    logError(picture.error().subject + ": " + picture.error().cause);
    return {};
}

} // namespace

GPUImagePicture::GPUImagePicture(const UIImage& image, PictureUpload how)
    : GPUImagePicture(image.cgImage(), how)
{
}

GPUImagePicture::GPUImagePicture(const CGImage& image, PictureUpload how)
    : m_pixelSizeOfImage(sizeOf(image))
{
    setShouldSmoothlyScaleOutput(how.smoothlyScaleOutput);
    const CGSize fitting =
        neverThinner(GPUImageContext::sizeThatFitsWithinATextureForSize(m_pixelSizeOfImage), m_pixelSizeOfImage);
    bool redraw = fitting != m_pixelSizeOfImage;
    m_pixelSizeOfImage = fitting;
    CGSize textureSize = fitting;
    if (how.smoothlyScaleOutput) {
        textureSize = {nextPowerOfTwo(fitting.width), nextPowerOfTwo(fitting.height)};
        redraw = true;
    }
    upload(image, how, textureSize, redraw);
}

std::shared_ptr<GPUImagePicture> GPUImagePicture::makeWithURL(const std::string& path)
{
    return std::make_shared<GPUImagePicture>(orLogged(loadPicture(path)));
}

std::shared_ptr<GPUImagePicture> GPUImagePicture::makeWithData(std::span<const std::uint8_t> bytes)
{
    return std::make_shared<GPUImagePicture>(orLogged(decodePicture(bytes, "picture")));
}

void GPUImagePicture::upload(const CGImage& image, PictureUpload how, CGSize textureSize, bool redraw)
{
    const IntSize pixels = wholePixels(textureSize);
    PictureBytes bytes = redraw ? PictureBytes{} : bytesAsTheyAre(image);
    if (!bytes.pixels)
        bytes = bytesDrawnAnew(image, pixels);
    PixelBuffer changed;
    if (how.removePremultiplication && bytes.premultiplied && bytes.pixels)
        changed = dividedByAlpha(bytes);
    const GLTextureFormat stored = uploadFormat(GL_RGBA, bytes.format, bgraSupport());
    if (stored.swapRedAndBlue && bytes.pixels) {
        if (!changed)
            changed = copyOf(bytes.pixels.bytes());
        if (changed)
            swapRedAndBlue({changed.data(), changed.size()}, changed.data());
    }
    const std::uint8_t* data = changed ? changed.data() : bytes.pixels.bytes().data();
    m_textureFormat = stored.format;
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_outputFramebuffer = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(textureSize, true);
        m_outputFramebuffer->disableReferenceCounting();
        if (!GPUImageContext::useImageProcessingContext())
            return;
        glBindTexture(GL_TEXTURE_2D, m_outputFramebuffer->texture());
        // A texture from the pool may have had mipmaps, or been wrapped, for its former picture.
        const GLint minFilter = how.smoothlyScaleOutput ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR;
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, minFilter);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(stored.internalFormat), pixels.width, pixels.height, 0,
                     stored.format, GL_UNSIGNED_BYTE, data);
        if (how.smoothlyScaleOutput && data)
            glGenerateMipmap(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, 0);
        checkDraw("uploading a picture");
    });
}

GPUImagePicture::~GPUImagePicture()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        m_outputFramebuffer->enableReferenceCounting();
        m_outputFramebuffer->unlock();
    });
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
    const std::vector<Target> targets = targetList(); // a target may change the list while it works
    for (const Target& target : targets) {
        target.input->setCurrentlyReceivingMonochromeInput(false);
        target.input->setInputSize(m_pixelSizeOfImage, target.textureIndex);
        target.input->setInputFramebuffer(m_outputFramebuffer, target.textureIndex);
        target.input->newFrameReadyAtTime(kCMTimeIndefinite, target.textureIndex);
    }
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
        target->setInputSize(m_pixelSizeOfImage, textureLocation);
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
    replaceTextureWithSubCGImage(image, CGRect({}, sizeOf(image)));
}

void GPUImagePicture::replaceTextureWithSubCGImage(const CGImage& image, CGRect rect)
{
    m_imageUpdateSemaphore.signal();
    const IntSize texture = m_outputFramebuffer->pixelSize();
    const bool within = rect.origin.x >= 0 && rect.origin.y >= 0 && rect.size.width >= 1 && rect.size.height >= 1 &&
                        rect.maxX() <= texture.width && rect.maxY() <= texture.height;
    if (!within || !image) {
        logError("the part of a picture to be replaced does not lie within it");
        return;
    }
    const IntSize size = wholePixels(rect.size);
    const IntSize origin = wholePixels({rect.origin.x, rect.origin.y});
    PictureBytes bytes = image.size() == size ? bytesAsTheyAre(image) : PictureBytes{};
    if (bytes.format == GL_BGRA || !bytes.pixels)
        bytes = bytesDrawnAnew(image, size);
    PixelBuffer swapped;
    const bool storedAsBGRA = m_textureFormat == GL_BGRA && bgraSupport() == BGRASupport::Extension;
    const bool comesAsBGRA = bytes.format == GL_BGRA;
    if (storedAsBGRA != comesAsBGRA && bytes.pixels) {
        swapped = copyOf(bytes.pixels.bytes());
        if (swapped)
            swapRedAndBlue({swapped.data(), swapped.size()}, swapped.data());
    }
    if (!bytes.pixels || (storedAsBGRA != comesAsBGRA && !swapped)) {
        logError("memory is short for a part of a picture");
        return;
    }
    runSynchronouslyOnVideoProcessingQueue([&] {
        if (!GPUImageContext::useImageProcessingContext())
            return;
        glBindTexture(GL_TEXTURE_2D, m_outputFramebuffer->texture());
        glTexSubImage2D(GL_TEXTURE_2D, 0, origin.width, origin.height, size.width, size.height,
                        storedAsBGRA ? GL_BGRA : GLenum{GL_RGBA}, GL_UNSIGNED_BYTE,
                        swapped ? swapped.data() : bytes.pixels.bytes().data());
        if (shouldSmoothlyScaleOutput())
            glGenerateMipmap(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, 0);
        checkDraw("replacing a part of a picture");
    });
}

} // namespace lamina
