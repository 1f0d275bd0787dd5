#pragma once

#include <cstddef>
#include <string_view>

namespace lamina {

/// Where a program reads the texture of one of its slots, as far as the texts of its shaders tell.
enum class ShaderReads {
    Anywhere,   ///< at computed places, or it can't be told
    AtVaryings, ///< at nothing but varyings of the slot, whatever the vertex shader makes of them
    InPlace,    ///< at nothing but the slot's coordinate as it came: a full quad of equal size reads texels' centres
};

/// `slot` from 0: its sampler is `inputImageTexture`, from the second on with the slot's number plus 1, and so are its
/// attribute `inputTextureCoordinate` and its varying `textureCoordinate`; further varyings of it end in the same
/// number. What the texts leave in doubt (macros, samplers handed to functions, varyings declared after a comma) counts
/// as `Anywhere`.
ShaderReads shaderReads(std::string_view vertexShader, std::string_view fragmentShader, std::size_t slot);

} // namespace lamina
