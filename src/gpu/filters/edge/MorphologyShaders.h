#pragma once

#include <string>

namespace lamina {

/// Which of the values around a pixel counts.
enum class Morphology {
    Dilation, ///< takes the largest value around
    Erosion,  ///< takes the smallest
};

/// What of the picture is compared.
enum class MorphologyChannels {
    Red, ///< alone, which gives an opaque grey
    All, ///< each of the four by itself
};

/// The radii that shaders can be made for.
inline constexpr unsigned kLargestMorphologyRadius = 4;

/// Shaders for one pass of a dilation or erosion along a line, `radius` pixels to each side: 0 counts as 1, more than 4
/// as 4. The step from pixel to pixel is `texelWidthOffset`, `texelHeightOffset`.
std::string morphologyVertexShader(unsigned radius);
/// The largest or smallest of what is read there.
std::string morphologyFragmentShader(Morphology morphology, MorphologyChannels channels, unsigned radius);

} // namespace lamina
