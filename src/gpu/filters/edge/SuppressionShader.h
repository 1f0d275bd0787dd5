#pragma once

#include <string>

namespace lamina {

/// By what neighbours are compared.
enum class SuppressedValue {
    Red,    ///< 0 to 255, from red
    Packed, ///< red + 256 green + 65536 blue, each 0 to 255: a number that is carried from byte to byte
};

/// A fragment shader for `GPUImage3x3TextureSamplingFilter` that keeps a pixel's colour where its value is above that
/// of the four neighbours before it and not below that of the four behind it, and where `condition`, an expression
/// that is 1 or 0, holds: it finds the value as `float centre`. `declarations` are its uniforms.
std::string suppressionShader(SuppressedValue value, const std::string& declarations, const std::string& condition);

} // namespace lamina
