#include "gpu/core/PictureTexture.h"

#include "gpu/core/DrawingFailures.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/PictureBytes_p.h"
#include "gpu/core/TextureUpload.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/Causes.h"
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

/// The bytes as the storage wants them: the picture's own, or a changed copy in their place.
class BytesToUpload {
public:
    explicit BytesToUpload(PictureBytes bytes)
        : m_bytes(std::move(bytes))
    {
    }
    /// False: there are none, for memory was short.
    explicit operator bool() const { return m_changed || m_bytes.pixels; }
    const std::uint8_t* data() const { return m_changed ? m_changed.data() : m_bytes.pixels.bytes().data(); }
    GLenum format() const { return m_bytes.format; }
    /// For whoever keeps them: with red first. Null where memory was short.
    std::shared_ptr<const std::uint8_t> share() &&
    {
        const bool blueFirst = m_bytes.format == GL_BGRA;
        if (blueFirst)
            change([](PixelBuffer&) {});
        if (blueFirst && m_changed)
            kernels::reorder(m_changed.data(), m_changed.size() / 4, {2, 1, 0, 3}, 0, m_changed.data());
        if (m_changed || !m_bytes.pixels)
            return std::move(m_changed).share();
        const auto kept = std::make_shared<const CGImage>(std::move(m_bytes.pixels));
        return {kept, kept->bytes().data()};
    }

    /// Nothing where the bytes are not premultiplied.
    void divideByAlpha()
    {
        if (!m_bytes.premultiplied)
            return;
        change([this](PixelBuffer& copy) {
            removePremultiplication({reinterpret_cast<std::uint32_t*>(copy.data()), copy.size() / 4},
                                    m_bytes.alphaFirst, m_bytes.littleEndian);
        });
    }
    /// Nothing where the picture's colours are so already, or it has no alpha.
    void premultiply()
    {
        const CGImageAlphaInfo alpha = m_bytes.pixels ? m_bytes.pixels.alphaInfo() : CGImageAlphaInfo::None;
        // In both orders that go up as they are the fourth byte is alpha.
        if (alpha == CGImageAlphaInfo::Last || alpha == CGImageAlphaInfo::First)
            change([](PixelBuffer& copy) { kernels::premultiply(copy.data(), copy.size() / 4, copy.data()); });
    }

private:
    template <class Change>
    void change(const Change& applied)
    {
        if (!m_bytes.pixels)
            return;
        const std::span<const std::uint8_t> own = m_bytes.pixels.bytes();
        m_changed = PixelBuffer::allocate(own.size());
        if (m_changed) {
            std::memcpy(m_changed.data(), own.data(), own.size());
            applied(m_changed);
        }
        m_bytes.pixels = {};
    }

    PictureBytes m_bytes;
    PixelBuffer m_changed;
};

} // namespace

PictureTexture::PictureTexture(CGImage image, PictureUpload how)
    : m_pictureSize(fittingSize(sizeOf(image)))
    , m_textureSize(m_pictureSize)
    , m_mipmaps(how.smoothlyScaleOutput ? Mipmaps::Made : Mipmaps::None)
    , m_premultiplies(how.premultiply)
{
    if (how.smoothlyScaleOutput)
        m_textureSize = {nextPowerOfTwo(m_pictureSize.width), nextPowerOfTwo(m_pictureSize.height)};
    const bool redraw = how.smoothlyScaleOutput || m_pictureSize != sizeOf(image);
    upload(std::move(image), how, redraw);
}

PictureTexture::~PictureTexture()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        if (const std::shared_ptr<GPUImageFramebuffer> framebuffer = release())
            framebuffer->unlock();
    });
}

std::shared_ptr<GPUImageFramebuffer> PictureTexture::release()
{
    m_pictureSize = {};
    if (m_framebuffer)
        m_framebuffer->enableReferenceCounting();
    return std::move(m_framebuffer);
}

void PictureTexture::upload(CGImage image, PictureUpload how, bool redraw)
{
    const IntSize size = GPUImageFramebuffer::wholePixels(m_textureSize);
    PictureBytes bytes = redraw ? PictureBytes{} : bytesAsTheyAre(image);
    if (!bytes.pixels)
        bytes = bytesDrawnAnew(image, size);
    image = {};
    BytesToUpload data(std::move(bytes));
    if (how.removePremultiplication)
        data.divideByAlpha();
    if (m_premultiplies)
        data.premultiply();
    if (!data && !size.isEmpty())
        DrawingFailures::note(cause::kNoMemory, size);
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_framebuffer = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(m_textureSize, true);
        m_framebuffer->disableReferenceCounting();
        // Filters may work on the pixels where they are.
        if (data && m_mipmaps == Mipmaps::None && GPUImageContext::usesKernels() && !size.isEmpty()) {
            std::shared_ptr<const std::uint8_t> pixels = std::move(data).share();
            if (!pixels)
                DrawingFailures::note(cause::kNoMemory, size);
            m_framebuffer->setHostPixels(std::move(pixels));
            return;
        }
        uploadTexture(*m_framebuffer, {data.data(), m_framebuffer->pixelSize(), data.format()}, m_mipmaps);
    });
}

void PictureTexture::replace(const CGImage& image, CGRect rect)
{
    const IntSize texture = m_framebuffer ? m_framebuffer->pixelSize() : IntSize{};
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
    BytesToUpload data(std::move(bytes));
    if (m_premultiplies)
        data.premultiply();
    const bool uploaded = data && valueFromVideoProcessingQueue([&] {
                              return uploadTexturePart(*m_framebuffer, origin.width, origin.height,
                                                       {data.data(), size, data.format()}, m_mipmaps);
                          });
    if (!uploaded)
        logError("memory is short for a part of a picture");
}

} // namespace lamina
