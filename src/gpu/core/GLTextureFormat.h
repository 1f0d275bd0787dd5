#pragma once

#include "gpu/core/GPUTextureOptions.h"
#include "platform/gl/GLHeaders.h"

#include <cstdint>
#include <span>

namespace lamina {

/// By which extension, if any, a context takes pixels in the order blue, green, red, alpha.
enum class BGRASupport {
    None,
    Apple,     ///< GL_APPLE_texture_format_BGRA8888: stored as GL_RGBA
    Extension, ///< GL_EXT_texture_format_BGRA8888: stored as GL_BGRA too
};

/// What a texture is made with.
struct GLTextureFormat {
    GLenum internalFormat;
    GLenum format;
    bool swapRedAndBlue; ///< on the processor, before pixels go up
    friend bool operator==(const GLTextureFormat&, const GLTextureFormat&) = default;
};

/// Of the context in force. From any thread.
BGRASupport bgraSupport();

/// How pixels in the order `format` (GL_RGBA or GL_BGRA) become a texture of `internalFormat`.
GLTextureFormat uploadFormat(GLenum internalFormat, GLenum format, BGRASupport support);

/// How a texture that is drawn into is stored. No pixels go up, so the order of the bytes doesn't matter and GL_BGRA
/// becomes the order that every context can draw into.
GLTextureFormat renderFormat(const GPUTextureOptions& options);

/// Exchanges bytes 0 and 2 of every four. In place when the spans are the same.
void swapRedAndBlue(std::span<const std::uint8_t> from, std::uint8_t* to);

} // namespace lamina
