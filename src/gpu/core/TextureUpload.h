#pragma once

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUTextureOptions.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace lamina {

// The one place from which pixels go up to textures. All of it on the video processing queue.

/// Pixels in memory, first row on top.
struct UploadPixels {
    const std::uint8_t* bytes = nullptr; ///< null: the content is anything
    IntSize size;
    GLenum format = GL_RGBA; ///< of those that `bytesPerUploadedPixel` knows
    GLenum type = GL_UNSIGNED_BYTE;
    std::size_t bytesPerRow = 0; ///< from one row to the next; 0: without gaps
};

/// Bytes of a pixel that OpenGL ES 2.0 takes in this form, GL_BGRA included; 0 for any other form.
std::size_t bytesPerUploadedPixel(GLenum format, GLenum type);

/// Whether a texture is sampled smoothly where it is drawn much smaller. Its sides are powers of two then.
enum class Mipmaps { None, Made };

/// Makes the pixels the texture's content and samples it as its options tell. Storage of the same form stays as it is.
/// The order blue, green, red goes up exchanged where the device lacks it. False where there is no context or memory is
/// short.
bool uploadTexture(GPUImageFramebuffer& framebuffer, const UploadPixels& pixels, Mipmaps mipmaps = Mipmaps::None);
/// A texture only, out of the shared pool, with these pixels and one count, the caller's. Null where `uploadTexture`
/// fails.
std::shared_ptr<GPUImageFramebuffer> fetchTexture(const UploadPixels& pixels, const GPUTextureOptions& options);
/// Puts the pixels (four bytes each) over the part of an uploaded texture that begins at (x, y) and must hold them.
bool uploadTexturePart(GPUImageFramebuffer& framebuffer, int x, int y, const UploadPixels& pixels,
                       Mipmaps mipmaps = Mipmaps::None);

/// New storage for the texture, which must be bound. `bytes`: as GL takes them in this form, or null.
void makeTextureStorage(GPUImageFramebuffer& framebuffer, const TextureStorage& storage,
                        const std::uint8_t* bytes = nullptr);

} // namespace lamina
