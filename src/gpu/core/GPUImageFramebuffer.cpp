#include "gpu/core/GPUImageFramebuffer.h"

#include "gpu/core/DrawingFailures.h"
#include "gpu/core/GLErrors.h"
#include "gpu/core/GLTextureFormat.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/TextureUpload.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/Causes.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cstdint>
#include <utility>

namespace lamina {

namespace {

std::atomic<std::size_t> s_living{0};

int cutToWhole(double side)
{
    constexpr double kMost = 1 << 24;
    return side > 0 ? static_cast<int>(std::min(side, kMost)) : 0;
}

/// Whether the bound framebuffer can be drawn into and read; one that can't be is noted.
bool isComplete(IntSize pixels)
{
    const bool complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    if (!complete)
        DrawingFailures::note("the device has no framebuffer", pixels);
    return complete;
}

} // namespace

std::size_t GPUImageFramebufferCache::livingCount()
{
    return s_living.load();
}

GPUImageFramebuffer::GPUImageFramebuffer(CGSize size, const GPUTextureOptions& options, bool onlyTexture)
    : m_missingFramebuffer(onlyTexture)
    , m_size(size)
    , m_textureOptions(options)
{
    ++s_living;
    runSynchronouslyOnVideoProcessingQueue([this] {
        if (!GPUImageContext::useImageProcessingContext())
            return;
        if (m_missingFramebuffer)
            generateTexture();
        else
            generateFramebuffer();
    });
}

GPUImageFramebuffer::GPUImageFramebuffer(CGSize size, GLuint overriddenTexture)
    : m_referenceCountingDisabled(true)
    , m_ownsTexture(false)
    , m_texture(overriddenTexture)
    , m_size(size)
{
    ++s_living;
}

GPUImageFramebuffer::~GPUImageFramebuffer()
{
    destroyFramebuffer();
    --s_living;
}

IntSize GPUImageFramebuffer::wholePixels(CGSize size)
{
    return {cutToWhole(size.width), cutToWhole(size.height)};
}

void GPUImageFramebuffer::setFilters(Filters filters)
{
    const auto set = [](GLenum parameter, GLenum& present, GLenum wanted) {
        if (present != wanted)
            glTexParameteri(GL_TEXTURE_2D, parameter, static_cast<GLint>(wanted));
        present = wanted;
    };
    set(GL_TEXTURE_MIN_FILTER, m_filters.minimizing, filters.minimizing);
    set(GL_TEXTURE_MAG_FILTER, m_filters.magnifying, filters.magnifying);
}

void GPUImageFramebuffer::bindForReading(TextureReads reads)
{
    constexpr Filters kNearest{GL_NEAREST, GL_NEAREST};
    glBindTexture(GL_TEXTURE_2D, m_texture);
    if (m_ownsTexture)
        setFilters(reads == TextureReads::TexelCentres ? kNearest : m_smoothFilters);
}

void GPUImageFramebuffer::generateTexture()
{
    const auto set = [](GLenum parameter, std::uint32_t value) {
        glTexParameteri(GL_TEXTURE_2D, parameter, static_cast<GLint>(value));
    };
    glActiveTexture(GL_TEXTURE1);
    glGenTextures(1, &m_texture);
    glBindTexture(GL_TEXTURE_2D, m_texture);
    m_smoothFilters = {m_textureOptions.minFilter, m_textureOptions.magFilter};
    setFilters(m_smoothFilters);
    set(GL_TEXTURE_WRAP_S, m_textureOptions.wrapS);
    set(GL_TEXTURE_WRAP_T, m_textureOptions.wrapT);
}

void GPUImageFramebuffer::generateFramebuffer()
{
    glGenFramebuffers(1, &m_framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    generateTexture();
    const GLTextureFormat stored = renderFormat(m_textureOptions);
    // An empty one has a pixel that nothing is drawn into: a framebuffer without any is an error at every draw.
    const int width = std::max(1, pixelSize().width);
    const int height = std::max(1, pixelSize().height);
    makeTextureStorage(*this, {{width, height}, stored.internalFormat, stored.format, m_textureOptions.type});
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_texture, 0);
    isComplete(pixelSize());
    glBindTexture(GL_TEXTURE_2D, 0);
    checkDraw("making a framebuffer");
}

void GPUImageFramebuffer::destroyFramebuffer()
{
    if (m_framebuffer == 0 && (m_texture == 0 || !m_ownsTexture))
        return;
    runSynchronouslyOnVideoProcessingQueue([this] {
        if (!GPUImageContext::useImageProcessingContext())
            return;
        if (m_framebuffer != 0)
            glDeleteFramebuffers(1, &m_framebuffer);
        if (m_ownsTexture)
            glDeleteTextures(1, &m_texture);
    });
}

void GPUImageFramebuffer::activateFramebuffer() const
{
    if (!mayCallGL())
        return;
    const IntSize pixels = pixelSize();
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glViewport(0, 0, pixels.width, pixels.height);
}

void GPUImageFramebuffer::lock()
{
    assert(isOnVideoProcessingQueue());
    if (!m_referenceCountingDisabled)
        ++m_framebufferReferenceCount;
}

void GPUImageFramebuffer::unlock()
{
    assert(isOnVideoProcessingQueue());
    if (m_referenceCountingDisabled)
        return;
    if (--m_framebufferReferenceCount == 0)
        GPUImageContext::sharedFramebufferCache().returnFramebufferToCache(shared_from_this());
}

std::size_t GPUImageFramebuffer::bytesPerRow() const
{
    return static_cast<std::size_t>(pixelSize().width) * 4;
}

CGImage GPUImageFramebuffer::newCGImageFromFramebufferContents(AlphaForm drawn)
{
    CGImage image;
    runSynchronouslyOnVideoProcessingQueue([&] {
        image = contents(drawn);
        unlock();
    });
    return image;
}

CGImage GPUImageFramebuffer::contents(AlphaForm drawn) const
{
    return valueFromVideoProcessingQueue(
        [&] { return GPUImageContext::useImageProcessingContext() ? readPixels(drawn) : CGImage(); });
}

CGImage GPUImageFramebuffer::readPixels(AlphaForm drawn) const
{
    const IntSize pixels = pixelSize();
    if (pixels.isEmpty() || m_framebuffer == 0)
        return {};
    activateFramebuffer();
    // Nothing would be read, and the buffer show what was in memory before.
    if (!isComplete(pixels))
        return {};
    const CGImageLayout layout = CGImageLayout::rgba(pixels.width, pixels.height, CGImageAlphaInfo::Last);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    if (!buffer) {
        DrawingFailures::note(cause::kNoMemory, pixels);
        return {};
    }
    glReadPixels(0, 0, pixels.width, pixels.height, GL_RGBA, GL_UNSIGNED_BYTE, buffer.data());
    checkDraw("reading a framebuffer");
    if (drawn == AlphaForm::Premultiplied)
        kernels::unpremultiply(buffer.data(), layout.byteCount() / 4);
    return CGImage::make(layout, std::move(buffer));
}

} // namespace lamina
