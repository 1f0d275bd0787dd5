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

/// How a fragment shader knows where the neighbours are.
enum class MorphologyPlaces {
    HandedOver, ///< each is a varying: what GPUs read ahead
    Computed,   ///< from the centre's and the step: less work where the processor draws
};

/// The radii that shaders can be made for.
inline constexpr unsigned kLargestMorphologyRadius = 4;

/// Shaders for one pass of a dilation or erosion along a line, `radius` pixels to each side: 0 counts as 1, more than 4
/// as 4. The step from pixel to pixel is `texelWidthOffset`, `texelHeightOffset`.
std::string morphologyVertexShader(MorphologyPlaces places, unsigned radius);
/// The largest or smallest of what is read there.
std::string morphologyFragmentShader(Morphology morphology, MorphologyChannels channels, MorphologyPlaces places,
                                     unsigned radius);

} // namespace lamina
