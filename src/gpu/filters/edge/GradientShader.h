#pragma once

#include <string>

namespace lamina {

/// How much the middle of the three differences across counts in a gradient.
enum class EdgeOperator {
    Sobel,   ///< twice: 1 2 1
    Prewitt, ///< as the others: 1 1 1
};

/// A fragment shader for `GPUImage3x3TextureSamplingFilter` or a second pass of its places. `statements` find, beside
/// what `neighbourhoodShader` reads of the red channel, its gradient:
///
///   gradient.x = (topRight - topLeft) + m (right - left) + (bottomRight - bottomLeft)       m: 2 or 1
///   gradient.y = (bottomLeft - topLeft) + m (bottom - top) + (bottomRight - topRight)
///
/// Each is at most m + 2, the length at most 4.5 for Sobel's and 3.2 for Prewitt's.
std::string gradientShader(EdgeOperator edgeOperator, const std::string& declarations, const std::string& statements);

} // namespace lamina
