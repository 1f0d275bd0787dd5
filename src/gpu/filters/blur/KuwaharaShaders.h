#pragma once

#include <string>

namespace lamina {

// Fragment shaders of the filter that `GPUImageKuwaharaFilter` tells of, for a radius from 0. Both take their places
// from `kStepVertexShader`.

/// Reads each quadrant by itself, in loops: 4 (radius + 1)^2 reads, a text of one length for all radii.
std::string kuwaharaShader(unsigned radius);
/// Reads each pixel once for all quadrants that it belongs to: (2 radius + 1)^2 reads, each a line of text.
std::string unrolledKuwaharaShader(unsigned radius);

} // namespace lamina
