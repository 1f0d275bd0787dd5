#pragma once

#include "gpu/core/GPUTextureOptions.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"
#include "platform/image/pixels/AlphaForm.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace lamina {

/// Where a shader reads a texture.
enum class TextureReads {
    Anywhere,     ///< its options say what is between texels
    TexelCentres, ///< where all filters give the same, and the nearest texel costs least
};

/// What the memory of a texture was made with. Nothing is stored where the size is empty.
struct TextureStorage {
    IntSize size;
    GLenum internalFormat = 0;
    GLenum format = 0;
    GLenum type = 0;
    friend bool operator==(const TextureStorage&, const TextureStorage&) = default;
};

/// A texture to read and, unless it is a texture only, to draw into; pooled by `GPUImageFramebufferCache`.
///
/// Where the processor works on frames by itself (`GPUImageContext::usesKernels`) the pixels may lie in our own memory
/// instead: whoever asks for them at the other side has them brought there. GL names and the texture's memory are made
/// when something is first drawn.
///
/// Users are counted by hand: a fetch gives one count, each consumer locks when it is handed the framebuffer and
/// unlocks after its draw, and at zero the object goes back to the pool. Counts are touched on the video processing
/// queue alone, which is the shared context's: other contexts may read the textures, but count nothing. Whoever holds a
/// count for longer than a call does it by a `FramebufferHold`. The object itself is shared; dropping the last
/// reference deletes the GL names on the queue.
class GPUImageFramebuffer : public std::enable_shared_from_this<GPUImageFramebuffer> {
public:
    /// `size` in pixels, cut to whole ones for GL. `onlyTexture`: without storage and without a framebuffer; the owner
    /// uploads into it.
    explicit GPUImageFramebuffer(CGSize size, const GPUTextureOptions& options = {}, bool onlyTexture = false);
    /// Wraps a texture that belongs to somebody else: never counted, never pooled, never deleted here.
    GPUImageFramebuffer(CGSize size, GLuint overriddenTexture);
    ~GPUImageFramebuffer();
    GPUImageFramebuffer(const GPUImageFramebuffer&) = delete;
    GPUImageFramebuffer& operator=(const GPUImageFramebuffer&) = delete;

    CGSize size() const { return m_size; }
    const GPUTextureOptions& textureOptions() const { return m_textureOptions; }
    /// The name, of a texture that has the newest pixels; draws bind it by `bindForReading`.
    GLuint texture();
    /// A texture only.
    bool missingFramebuffer() const { return m_missingFramebuffer; }
    /// The size in whole pixels, as GL has it.
    IntSize pixelSize() const { return wholePixels(m_size); }
    /// Cut to whole pixels that GL can take; NaN and negative sides count as 0.
    static IntSize wholePixels(CGSize size);
    /// What the texture's memory was made with last, by `makeTextureStorage`.
    const TextureStorage& textureStorage() const { return m_textureStorage; }
    void setTextureStorage(const TextureStorage& storage) { m_textureStorage = storage; }

    /// Binds the texture to the active unit, for such reads. The one way to bind it for a draw: its filters are those
    /// of the draw before. Somebody else's texture keeps its own. On the queue.
    void bindForReading(TextureReads reads);
    /// What draws from now on find in place of the options' `minFilter`: with mipmaps, another than without. On the
    /// queue.
    void setMinFilter(GLenum filter) { m_smoothFilters.minimizing = filter; }

    /// Draws go here from now on, over the whole area. What was in our own memory is in the texture. On the queue.
    void activateFramebuffer();

    // Pixels in our own memory: R G B A of 8 bits, rows without gaps, first row of the texture on top. On the queue.

    /// Whether `hostPixels` can be had: there are four bytes a pixel to be read.
    bool hasHostPixels() const;
    /// The pixels, read back where a draw was newer; null where they can't be. They stay as they are while they are
    /// held.
    std::shared_ptr<const std::uint8_t> hostPixels();
    /// The same where nothing is to be read back; else null.
    std::shared_ptr<const std::uint8_t> hostPixelsAtHand() const { return m_hostIsValid ? m_hostPixels : nullptr; }
    /// Memory for the pixels, which the caller writes all of: what was drawn before is gone. Null: memory is short.
    std::uint8_t* hostPixelsToWrite();
    /// The pixels from now on; null: there are none, and what the texture holds counts.
    void setHostPixels(std::shared_ptr<const std::uint8_t> pixels);
    /// The same with what is in them, to change a part. Null where a texture has the newest pixels, too.
    std::uint8_t* hostPixelsToChange();
    /// For the pool, before the next use: what was drawn plays no part any more. Memory that a frame can be written
    /// into is kept.
    void forgetPixels();
    /// For the pool, when it is back: of a large one only the newest pixels take memory.
    void letGoOfSpareMemory();
    /// Bytes of memory that textures and pixels take, ours and GL's.
    std::size_t heldBytes() const;

    /// One count more. On the queue, as `unlock`.
    void lock();
    /// One count less. At zero it returns to the pool. One unlock too many is not noticed: the object is then never
    /// returned.
    void unlock();
    void clearAllLocks() { m_framebufferReferenceCount = 0; }
    void disableReferenceCounting() { m_referenceCountingDisabled = true; }
    /// Not for somebody else's texture.
    void enableReferenceCounting() { m_referenceCountingDisabled = !m_ownsTexture; }
    bool referenceCountingDisabled() const { return m_referenceCountingDisabled; }
    /// For those who watch the counts.
    unsigned framebufferReferenceCount() const { return m_framebufferReferenceCount; }

    /// The pixels, RGBA with straight alpha, first row of the texture on top; gives back one count, which the caller
    /// must hold. `drawn`: what the colours were drawn as; premultiplied ones are divided by their alpha. Empty when
    /// there is nothing to read or memory is short. From any thread.
    CGImage newCGImageFromFramebufferContents(AlphaForm drawn = AlphaForm::Straight);
    /// The same pixels without giving back a count, for who holds none. From any thread.
    CGImage contents(AlphaForm drawn = AlphaForm::Straight) const;

    /// Bytes of a row of read-back pixels.
    std::size_t bytesPerRow() const;

private:
    struct Filters {
        GLenum minimizing = 0;
        GLenum magnifying = 0;
    };
    /// The texture must be bound.
    void setFilters(Filters filters);
    void generate();
    void generateTexture();
    void generateFramebuffer();
    void destroyFramebuffer();
    void bringUp();
    PixelBuffer readTexture() const;
    CGImage readPixels(AlphaForm drawn) const;
    std::size_t byteCount() const { return bytesPerRow() * static_cast<std::size_t>(pixelSize().height); }

    std::shared_ptr<const std::uint8_t> m_hostPixels; ///< the newest, or memory to be written anew
    std::uint8_t* m_ownPixels = nullptr;              ///< `m_hostPixels` where it was made here
    bool m_hostIsValid = false;
    bool m_textureIsValid = true;
    GLuint m_framebuffer = 0;
    unsigned m_framebufferReferenceCount = 0;
    bool m_referenceCountingDisabled = false;
    bool m_missingFramebuffer = false;
    bool m_isGenerated = false; ///< whether GL names stand
    bool m_ownsTexture = true;
    GLuint m_texture = 0;
    CGSize m_size;
    GPUTextureOptions m_textureOptions;
    Filters m_smoothFilters; ///< for reads anywhere
    Filters m_filters;       ///< as GL has them
    TextureStorage m_textureStorage;
};

} // namespace lamina
