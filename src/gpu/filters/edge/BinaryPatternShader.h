#pragma once

#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

#include <string>

namespace lamina {

/// A fragment shader for `GPUImage3x3TextureSamplingFilter` that gives the local binary pattern of red, or of red,
/// green and blue.
std::string binaryPatternShader(NeighbourValue value);

} // namespace lamina
