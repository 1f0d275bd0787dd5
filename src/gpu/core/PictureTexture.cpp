#include "gpu/core/PictureTexture.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/PictureBytes_p.h"
#include "gpu/core/TextureUpload.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/Log.h"
#include "platform/gl/GLHeaders.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

namespace lamina {

namespace {

CGSize sizeOf(const CGImage& image)
{
    return image ? CGSize{static_cast<double>(image.width()), static_cast<double>(image.height())} : CGSize{};
}

/// The picture's size within the texture limit. The fit leaves less than a pixel of a long thin picture; it keeps one.
CGSize fittingSize(CGSize whole)
{
    const CGSize fitting = GPUImageContext::sizeThatFitsWithinATextureForSize(whole);
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

/// The bytes as the storage wants them. Holds either the picture's own or a changed copy.
class BytesToUpload {
public:
    explicit BytesToUpload(const PictureBytes& bytes)
        : m_pixels(bytes.pixels)
    {
    }
    void set(PixelBuffer changed) { m_changed = std::move(changed); }
    /// Nothing where the picture's colours are so already, or it has no alpha. False when memory is short.
    bool premultiply()
    {
        const CGImageAlphaInfo alpha = m_pixels.alphaInfo();
        if (alpha != CGImageAlphaInfo::Last && alpha != CGImageAlphaInfo::First)
            return true;
        m_changed = copyOf(m_pixels.bytes());
        // In both orders that go up as they are the fourth byte is alpha.
        kernels::premultiply(m_changed.data(), m_changed.size() / 4, m_changed.data());
        return static_cast<bool>(m_changed);
    }
    const std::uint8_t* data() const { return m_changed ? m_changed.data() : m_pixels.bytes().data(); }

private:
    CGImage m_pixels;
    PixelBuffer m_changed;
};

} // namespace

PictureTexture::PictureTexture(const CGImage& image, PictureUpload how)
    : m_pictureSize(fittingSize(sizeOf(image)))
    , m_textureSize(m_pictureSize)
    , m_mipmaps(how.smoothlyScaleOutput ? Mipmaps::Made : Mipmaps::None)
    , m_premultiplies(how.premultiply)
{
    if (how.smoothlyScaleOutput)
        m_textureSize = {nextPowerOfTwo(m_pictureSize.width), nextPowerOfTwo(m_pictureSize.height)};
    upload(image, how, how.smoothlyScaleOutput || m_pictureSize != sizeOf(image));
}

PictureTexture::~PictureTexture()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        m_framebuffer->enableReferenceCounting();
        m_framebuffer->unlock();
    });
}

void PictureTexture::upload(const CGImage& image, PictureUpload how, bool redraw)
{
    PictureBytes bytes = redraw ? PictureBytes{} : bytesAsTheyAre(image);
    if (!bytes.pixels)
        bytes = bytesDrawnAnew(image, GPUImageFramebuffer::wholePixels(m_textureSize));
    BytesToUpload data(bytes);
    if (how.removePremultiplication && bytes.premultiplied && bytes.pixels)
        data.set(dividedByAlpha(bytes));
    if (m_premultiplies && bytes.pixels)
        data.premultiply();
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_framebuffer = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(m_textureSize, true);
        m_framebuffer->disableReferenceCounting();
        uploadTexture(*m_framebuffer, {data.data(), m_framebuffer->pixelSize(), bytes.format}, m_mipmaps);
    });
}

void PictureTexture::replace(const CGImage& image, CGRect rect)
{
    const IntSize texture = m_framebuffer->pixelSize();
    const bool within = rect.origin.x >= 0 && rect.origin.y >= 0 && rect.size.width >= 1 && rect.size.height >= 1 &&
                        rect.maxX() <= texture.width && rect.maxY() <= texture.height;
    if (!within || !image) {
        logError("the part of a picture to be replaced does not lie within it");
        return;
    }
    const IntSize size = GPUImageFramebuffer::wholePixels(rect.size);
    const IntSize origin = GPUImageFramebuffer::wholePixels({rect.origin.x, rect.origin.y});
    PictureBytes bytes = image.size() == size ? bytesAsTheyAre(image) : PictureBytes{};
    if (bytes.format == GL_BGRA || !bytes.pixels)
        bytes = bytesDrawnAnew(image, size);
    BytesToUpload data(bytes);
    const bool uploaded =
        bytes.pixels && (!m_premultiplies || data.premultiply()) && valueFromVideoProcessingQueue([&] {
            return uploadTexturePart(*m_framebuffer, origin.width, origin.height, {data.data(), size, bytes.format},
                                     m_mipmaps);
        });
    if (!uploaded)
        logError("memory is short for a part of a picture");
}

} // namespace lamina
