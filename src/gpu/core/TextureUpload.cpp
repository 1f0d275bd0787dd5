#include "gpu/core/TextureUpload.h"

#include "gpu/core/DrawingFailures.h"
#include "gpu/core/GLErrors.h"
#include "gpu/core/GLTextureFormat.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUTextureOptions.h"
#include "platform/base/Causes.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <span>

namespace lamina {

namespace {

struct PixelForm {
    GLenum format;
    GLenum type;
    std::size_t bytes;
};

constexpr std::array<PixelForm, 9> kForms{{
    {GL_RGBA, GL_UNSIGNED_BYTE, 4},
    {GL_BGRA, GL_UNSIGNED_BYTE, 4},
    {GL_RGB, GL_UNSIGNED_BYTE, 3},
    {GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE, 2},
    {GL_LUMINANCE, GL_UNSIGNED_BYTE, 1},
    {GL_ALPHA, GL_UNSIGNED_BYTE, 1},
    {GL_RGB, GL_UNSIGNED_SHORT_5_6_5, 2},
    {GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4, 2},
    {GL_RGBA, GL_UNSIGNED_SHORT_5_5_5_1, 2},
}};

/// How GL reads rows, for the length of one upload.
class RowLayout {
public:
    /// `pixelsPerRow`: from row to row; 0: without gaps.
    RowLayout(std::size_t rowBytes, std::size_t pixelsPerRow)
        : m_hasGaps(pixelsPerRow != 0)
    {
        // Only four and one are asked for: with one, rows are as long as their pixels.
        glPixelStorei(GL_UNPACK_ALIGNMENT, !m_hasGaps && rowBytes % 4 == 0 ? 4 : 1);
        if (m_hasGaps)
            glPixelStorei(GL_UNPACK_ROW_LENGTH_EXT, static_cast<GLint>(pixelsPerRow));
    }
    ~RowLayout()
    {
        glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
        if (m_hasGaps)
            glPixelStorei(GL_UNPACK_ROW_LENGTH_EXT, 0);
    }
    RowLayout(const RowLayout&) = delete;
    RowLayout& operator=(const RowLayout&) = delete;

private:
    bool m_hasGaps;
};

/// The pixels as the texture takes them: where they lie, or in a changed copy.
class Rows {
public:
    Rows(const UploadPixels& pixels, bool swap)
        : m_bytes(pixels.bytes)
        , m_pixelBytes(bytesPerUploadedPixel(pixels.format, pixels.type))
        , m_rowBytes(m_pixelBytes * static_cast<std::size_t>(std::max(0, pixels.size.width)))
    {
        if (!m_bytes)
            return;
        const bool gaps = pixels.bytesPerRow != 0 && pixels.bytesPerRow != m_rowBytes;
        if (gaps && !swap && canSkipGaps(pixels.bytesPerRow))
            m_pixelsPerRow = pixels.bytesPerRow / m_pixelBytes;
        else if (gaps || swap)
            copy(pixels, gaps ? pixels.bytesPerRow : m_rowBytes, swap);
    }
    /// False when memory was short for the copy.
    bool ok() const { return !m_failed; }
    const std::uint8_t* bytes() const { return m_bytes; }
    /// To memory of the same form.
    void copyInto(std::uint8_t* out, std::size_t bytesPerRow, int rows) const
    {
        const std::size_t from = m_pixelsPerRow != 0 ? m_pixelsPerRow * m_pixelBytes : m_rowBytes;
        for (std::size_t row = 0; row < static_cast<std::size_t>(rows); ++row)
            std::memcpy(out + row * bytesPerRow, m_bytes + row * from, m_rowBytes);
    }
    RowLayout layout() const { return {m_rowBytes, m_pixelsPerRow}; }

private:
    /// OpenGL ES 2.0 itself has no rows with gaps.
    bool canSkipGaps(std::size_t bytesPerRow) const
    {
        return bytesPerRow % m_pixelBytes == 0 &&
               GPUImageContext::deviceSupportsOpenGLESExtension("GL_EXT_unpack_subimage");
    }
    void copy(const UploadPixels& pixels, std::size_t bytesPerRow, bool swap)
    {
        m_copy = PixelBuffer::allocate(m_rowBytes * static_cast<std::size_t>(std::max(0, pixels.size.height)));
        m_failed = !m_copy;
        if (m_failed)
            return;
        for (std::size_t row = 0; row < static_cast<std::size_t>(pixels.size.height); ++row)
            std::memcpy(m_copy.data() + row * m_rowBytes, pixels.bytes + row * bytesPerRow, m_rowBytes);
        if (swap)
            swapRedAndBlue({m_copy.data(), m_copy.size()}, m_copy.data());
        m_bytes = m_copy.data();
    }

    const std::uint8_t* m_bytes;
    std::size_t m_pixelBytes;
    std::size_t m_rowBytes;
    std::size_t m_pixelsPerRow = 0;
    PixelBuffer m_copy;
    bool m_failed = false;
};

GLint sampled(std::uint32_t option)
{
    return static_cast<GLint>(option);
}

/// A texture from the pool may have had mipmaps, or been wrapped, for its former content.
void setSampling(GPUImageFramebuffer& framebuffer, Mipmaps mipmaps)
{
    const GPUTextureOptions& options = framebuffer.textureOptions();
    framebuffer.setMinFilter(mipmaps == Mipmaps::Made ? GLenum{GL_LINEAR_MIPMAP_LINEAR} : options.minFilter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, sampled(options.wrapS));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, sampled(options.wrapT));
}

void beginUpload(GPUImageFramebuffer& framebuffer)
{
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, framebuffer.texture());
}

void endUpload(bool hasContent, Mipmaps mipmaps)
{
    if (mipmaps == Mipmaps::Made && hasContent)
        glGenerateMipmap(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, 0);
    checkDraw("uploading pixels");
}

void putInto(const TextureStorage& storage, int x, int y, IntSize size, const Rows& rows)
{
    const RowLayout layout = rows.layout();
    glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, size.width, size.height, storage.format, storage.type, rows.bytes());
}

} // namespace

std::size_t bytesPerUploadedPixel(GLenum format, GLenum type)
{
    const auto isAsked = [&](const PixelForm& form) { return form.format == format && form.type == type; };
    const auto* const form = std::ranges::find_if(kForms, isAsked);
    return form == kForms.end() ? 0 : form->bytes;
}

void makeTextureStorage(GPUImageFramebuffer& framebuffer, const TextureStorage& storage, const std::uint8_t* bytes)
{
    forgetGLErrors(); // of what was done before
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(storage.internalFormat), storage.size.width, storage.size.height,
                 0, storage.format, storage.type, bytes);
    if (glGetError() == GL_OUT_OF_MEMORY)
        DrawingFailures::note("graphics memory is short", storage.size);
    framebuffer.setTextureStorage(storage);
}

bool uploadTexture(GPUImageFramebuffer& framebuffer, const UploadPixels& pixels, Mipmaps mipmaps)
{
    // Without a conversion in between a texture is stored as its pixels come, the order of blue and red apart.
    const GLenum internalFormat = pixels.format == GL_BGRA ? GLenum{GL_RGBA} : pixels.format;
    const GLTextureFormat form = uploadFormat(internalFormat, pixels.format, bgraSupport());
    const Rows rows(pixels, form.swapRedAndBlue);
    if (!rows.ok())
        DrawingFailures::note(cause::kNoMemory, pixels.size);
    if (!rows.ok() || !GPUImageContext::useImageProcessingContext())
        return false;
    framebuffer.setHostPixels(nullptr);
    beginUpload(framebuffer);
    setSampling(framebuffer, mipmaps);
    const TextureStorage storage{pixels.size, form.internalFormat, form.format, pixels.type};
    if (framebuffer.textureStorage() != storage) {
        const RowLayout layout = rows.layout();
        makeTextureStorage(framebuffer, storage, rows.bytes());
    } else if (rows.bytes()) {
        putInto(storage, 0, 0, pixels.size, rows);
    }
    endUpload(rows.bytes() != nullptr, mipmaps);
    return true;
}

std::shared_ptr<GPUImageFramebuffer> fetchTexture(const UploadPixels& pixels, const GPUTextureOptions& options)
{
    const CGSize size{static_cast<double>(pixels.size.width), static_cast<double>(pixels.size.height)};
    auto framebuffer = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(size, options, true);
    if (uploadTexture(*framebuffer, pixels))
        return framebuffer;
    framebuffer->unlock();
    return nullptr;
}

bool uploadTexturePart(GPUImageFramebuffer& framebuffer, int x, int y, const UploadPixels& pixels, Mipmaps mipmaps)
{
    const TextureStorage& storage = framebuffer.textureStorage();
    std::uint8_t* const host = framebuffer.hostPixelsToChange();
    const bool isBlueFirst = !host && storage.format == GL_BGRA;
    const Rows rows(pixels, isBlueFirst != (pixels.format == GL_BGRA));
    if (!rows.ok() || !GPUImageContext::useImageProcessingContext())
        return false;
    if (host) {
        const std::size_t begin =
            static_cast<std::size_t>(y) * framebuffer.bytesPerRow() + 4 * static_cast<std::size_t>(x);
        rows.copyInto(host + begin, framebuffer.bytesPerRow(), pixels.size.height);
        return true;
    }
    beginUpload(framebuffer);
    framebuffer.setHostPixels(nullptr);
    putInto(storage, x, y, pixels.size, rows);
    endUpload(true, mipmaps);
    return true;
}

} // namespace lamina
