#pragma once

#include <string>

namespace lamina {

// Nine reads along a line through each pixel, weighed 0.18 in the middle and 0.15, 0.12, 0.09 and 0.05 outwards, which
// sum to 1: blurs of a fixed cost, whose width is the distance of the reads.

/// What differs between the fragment shaders, in GLSL. All of it may use `textureCoordinate`, `inputImageTexture`,
/// `pixel`, the one itself, and what the declarations bring.
struct NineSamples {
    std::string stride;         ///< expression: the way from one read to the next, in texture coordinates
    std::string declarations;   ///< uniforms, varyings and functions
    std::string result = "sum"; ///< expression: what is written
    std::string addition = "sum += color * weight;"; ///< statements: what becomes of a read
};

/// The fragment shader.
std::string nineSampleShader(const NineSamples& samples);

} // namespace lamina
