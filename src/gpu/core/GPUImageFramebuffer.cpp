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
#include <cstring>
#include <optional>
#include <utility>

namespace lamina {

namespace {

std::atomic<std::size_t> s_living{0};

/// Of more than this no memory is kept beside a texture in the pool.
constexpr std::size_t kMostSparePixels = std::size_t{16} << 20;

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
    if (!GPUImageContext::usesKernels())
        runSynchronouslyOnVideoProcessingQueue([this] { generate(); });
}

GPUImageFramebuffer::GPUImageFramebuffer(CGSize size, GLuint overriddenTexture)
    : m_referenceCountingDisabled(true)
    , m_isGenerated(true)
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
    bringUp();
    glBindTexture(GL_TEXTURE_2D, m_texture);
    if (m_ownsTexture)
        setFilters(reads == TextureReads::TexelCentres ? kNearest : m_smoothFilters);
}

void GPUImageFramebuffer::generate()
{
    if (m_isGenerated || !GPUImageContext::useImageProcessingContext())
        return;
    m_isGenerated = true;
    if (m_missingFramebuffer)
        generateTexture();
    else
        generateFramebuffer();
}

/// Names and memory are there, and the newest pixels in the texture. The unit that is active stays so.
void GPUImageFramebuffer::bringUp()
{
    if (m_isGenerated && m_textureIsValid)
        return;
    GLint unit = GL_TEXTURE0;
    GLint target = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &unit);
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &target);
    generate();
    if (!m_textureIsValid) {
        m_textureIsValid = true; // what is called now asks for the texture
        const std::shared_ptr<const std::uint8_t> pixels = m_hostPixels;
        std::uint8_t* const own = m_ownPixels;
        if (uploadTexture(*this, {pixels.get(), pixelSize()})) {
            m_hostPixels = pixels; // still good, for kernels that come after
            m_ownPixels = own;
            m_hostIsValid = pixels != nullptr;
        }
    }
    glActiveTexture(static_cast<GLenum>(unit));
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(target));
}

GLuint GPUImageFramebuffer::texture()
{
    if (!m_isGenerated || !m_textureIsValid)
        runSynchronouslyOnVideoProcessingQueue([this] { bringUp(); });
    return m_texture;
}

bool GPUImageFramebuffer::hasHostPixels() const
{
    if (m_hostIsValid)
        return true;
    const bool fourBytes = m_textureStorage.type == GL_UNSIGNED_BYTE &&
                           (m_textureStorage.format == GL_RGBA || m_textureStorage.format == GL_BGRA);
    return m_ownsTexture && m_isGenerated && fourBytes && m_textureStorage.size == pixelSize();
}

std::shared_ptr<const std::uint8_t> GPUImageFramebuffer::hostPixels()
{
    if (!m_hostIsValid && hasHostPixels()) {
        PixelBuffer read = readTexture();
        m_ownPixels = read.data();
        m_hostPixels = std::move(read).share();
        m_hostIsValid = m_hostPixels != nullptr;
    }
    return m_hostIsValid ? m_hostPixels : nullptr;
}

std::uint8_t* GPUImageFramebuffer::hostPixelsToWrite()
{
    if (!m_ownPixels || m_hostPixels.use_count() != 1) {
        setHostPixels(nullptr);
        PixelBuffer buffer = PixelBuffer::allocate(byteCount());
        m_ownPixels = buffer.data();
        m_hostPixels = std::move(buffer).share();
    }
    m_hostIsValid = m_hostPixels != nullptr;
    m_textureIsValid = !m_hostIsValid;
    return m_ownPixels;
}

void GPUImageFramebuffer::setHostPixels(std::shared_ptr<const std::uint8_t> pixels)
{
    m_ownPixels = nullptr;
    m_hostIsValid = pixels != nullptr;
    m_textureIsValid = !m_hostIsValid;
    m_hostPixels = std::move(pixels);
}

std::uint8_t* GPUImageFramebuffer::hostPixelsToChange()
{
    if (!m_hostIsValid || m_textureIsValid)
        return nullptr;
    const bool isOurs = m_ownPixels && m_hostPixels.use_count() == 1;
    const std::shared_ptr<const std::uint8_t> kept = isOurs ? nullptr : m_hostPixels;
    std::uint8_t* const pixels = hostPixelsToWrite();
    if (pixels && kept)
        std::memcpy(pixels, kept.get(), byteCount());
    else if (!pixels)
        setHostPixels(kept);
    return pixels;
}

void GPUImageFramebuffer::forgetPixels()
{
    if (!m_ownPixels || m_hostPixels.use_count() != 1)
        setHostPixels(nullptr);
    m_hostIsValid = false;
    m_textureIsValid = true; // as good as any
}

void GPUImageFramebuffer::letGoOfSpareMemory()
{
    if (m_hostPixels && m_textureIsValid && byteCount() > kMostSparePixels)
        setHostPixels(nullptr);
}

std::size_t GPUImageFramebuffer::heldBytes() const
{
    return byteCount() * (m_isGenerated && m_hostPixels ? 2 : 1); // what has neither yet is to have one
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

void GPUImageFramebuffer::activateFramebuffer()
{
    if (!mayCallGL())
        return;
    const IntSize pixels = pixelSize();
    bringUp();
    setHostPixels(nullptr); // they are to be drawn over
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

namespace {

/// A framebuffer around a texture that has none, bound for its length.
class ReadingFramebuffer {
public:
    explicit ReadingFramebuffer(GLuint texture)
    {
        glGetIntegerv(GL_FRAMEBUFFER_BINDING, &m_before);
        glGenFramebuffers(1, &m_name);
        glBindFramebuffer(GL_FRAMEBUFFER, m_name);
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    }
    ~ReadingFramebuffer()
    {
        glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(m_before));
        glDeleteFramebuffers(1, &m_name);
    }
    ReadingFramebuffer(const ReadingFramebuffer&) = delete;
    ReadingFramebuffer& operator=(const ReadingFramebuffer&) = delete;

private:
    GLint m_before = 0;
    GLuint m_name = 0;
};

} // namespace

/// Without memory where there is none, or nothing to be read. The bound framebuffer is read, or one around the texture.
PixelBuffer GPUImageFramebuffer::readTexture() const
{
    const IntSize pixels = pixelSize();
    std::optional<ReadingFramebuffer> around;
    if (m_framebuffer != 0)
        glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    else
        around.emplace(m_texture);
    // Nothing would be read, and the buffer show what was in memory before.
    if (!isComplete(pixels))
        return {};
    PixelBuffer buffer = PixelBuffer::allocate(byteCount());
    if (!buffer)
        return {};
    glReadPixels(0, 0, pixels.width, pixels.height, GL_RGBA, GL_UNSIGNED_BYTE, buffer.data());
    checkDraw("reading a framebuffer");
    return buffer;
}

CGImage GPUImageFramebuffer::readPixels(AlphaForm drawn) const
{
    const IntSize pixels = pixelSize();
    if (pixels.isEmpty() || m_missingFramebuffer)
        return {};
    const CGImageLayout layout = CGImageLayout::rgba(pixels.width, pixels.height, CGImageAlphaInfo::Last);
    if (m_hostIsValid && drawn == AlphaForm::Straight)
        return CGImage::make(layout, m_hostPixels, byteCount());
    PixelBuffer buffer;
    if (m_hostIsValid) {
        buffer = PixelBuffer::allocate(byteCount());
        if (buffer)
            std::memcpy(buffer.data(), m_hostPixels.get(), byteCount());
    } else if (m_framebuffer != 0) {
        buffer = readTexture();
    }
    if (!buffer && (m_hostIsValid || m_framebuffer != 0))
        DrawingFailures::note(cause::kNoMemory, pixels);
    if (!buffer)
        return {};
    if (drawn == AlphaForm::Premultiplied)
        kernels::unpremultiply(buffer.data(), byteCount() / 4);
    return CGImage::make(layout, std::move(buffer));
}

} // namespace lamina
