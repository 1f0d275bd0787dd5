#pragma once

#include "platform/gl/GLHeaders.h"

#include <cstdint>

namespace lamina {

/// How a texture is sampled and stored. GL's own values.
struct GPUTextureOptions {
    std::uint32_t minFilter = GL_LINEAR;
    std::uint32_t magFilter = GL_LINEAR;
    std::uint32_t wrapS = GL_CLAMP_TO_EDGE;
    std::uint32_t wrapT = GL_CLAMP_TO_EDGE;
    std::uint32_t internalFormat = GL_RGBA;
    std::uint32_t format = GL_BGRA;
    std::uint32_t type = GL_UNSIGNED_BYTE;

    friend bool operator==(const GPUTextureOptions&, const GPUTextureOptions&) = default;
};

} // namespace lamina
