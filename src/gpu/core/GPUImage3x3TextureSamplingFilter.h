#pragma once

#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/TexelSampling.h"

#include <string>

namespace lamina {

/// Passes the places of a pixel and its eight neighbours on; needs `texelWidth` and `texelHeight`.
extern const char* const kGPUImageNearbyTexelSamplingVertexShaderString;

/// The base of filters that look at a pixel and its eight neighbours. Fragment shaders get their places as the varyings
/// `textureCoordinate`, `leftTextureCoordinate`, `rightTextureCoordinate`, `topTextureCoordinate`,
/// `topLeftTextureCoordinate`, `topRightTextureCoordinate`, `bottomTextureCoordinate`, `bottomLeftTextureCoordinate`
/// and `bottomRightTextureCoordinate`; `neighbourhoodShader` reads them all.
class GPUImage3x3TextureSamplingFilter : public TexelSampling<GPUImageFilter> {
public:
    explicit GPUImage3x3TextureSamplingFilter(const std::string& fragmentShader);
};

/// What is read of each neighbour.
enum class NeighbourValue {
    Red,  ///< a `float`
    Rgb,  ///< a `vec3`
    Rgba, ///< a `vec4`
};

/// A fragment shader for these places. `statements` find the pixel as `vec4 color` and its neighbours as `topLeft`,
/// `top`, `topRight`, `left`, `right`, `bottomLeft`, `bottom` and `bottomRight`, as stored, and write `gl_FragColor`.
/// `declarations` are their uniforms and functions.
std::string neighbourhoodShader(NeighbourValue value, const std::string& declarations, const std::string& statements);

} // namespace lamina
