#pragma once

#include <string>
#include <vector>

namespace lamina {

/// What a symmetric blur along a line makes of a pixel and its neighbours: the first weight is that of the pixel
/// itself, the one at i that of both neighbours i steps away. They sum to 1, neighbours counted twice. Its length is
/// the radius plus 1.
using BlurWeights = std::vector<float>;

/// The bell exp(-i^2 / (2 sigma^2)). One weight of 1 for radius 0 or a sigma that is not above 0.
BlurWeights gaussianBlurWeights(unsigned radius, double sigma);
/// The same weight for all.
BlurWeights boxBlurWeights(unsigned radius);
/// Any line, from its middle outwards: divided by the sum of all, neighbours counted twice.
BlurWeights normalisedBlurWeights(const std::vector<double>& line);

/// What of the picture is summed.
enum class BlurChannels {
    All,
    Red, ///< alone, written to red, green and blue; opaque
};

// Shaders for one pass of such a blur. The vertex shader gets the step from one pixel to the next as `texelWidthOffset`
// and `texelHeightOffset` and hands out where to read as `blurCoordinates`. Radius 0 gives the plain texts that pass a
// picture on.

/// Each neighbour is read by itself. The array of places has 2 * radius + 1 entries: few devices take more than
/// radius 7.
std::string standardBlurVertexShader(const BlurWeights& weights);
/// Sums what is read there.
std::string standardBlurFragmentShader(const BlurWeights& weights, BlurChannels channels = BlurChannels::All);

/// Neighbours are read in pairs, at the place between both where linear sampling weighs them right. The vertex shader
/// hands out the places of seven pairs on each side, or as many as the device has varyings for; those of pairs beyond
/// are computed at each pixel from the step, `singleStepOffset`.
std::string optimizedBlurVertexShader(const BlurWeights& weights);
/// Sums what is read there, and at the computed places.
std::string optimizedBlurFragmentShader(const BlurWeights& weights, BlurChannels channels = BlurChannels::All);

/// How the places of a pass are read.
enum class BlurReads {
    Pairs,      ///< two neighbours at once, as above
    EachDown,   ///< each texel of the column: steps must be one texel downwards
    EachAcross, ///< each texel of the row: steps must be one texel across
};

/// The shader for such reads. Where the processor draws, reading each neighbour by itself without interpolation takes
/// about half the time of pairs, and gives the same within a step of 8 bits.
std::string blurVertexShader(const BlurWeights& weights, BlurReads reads);
/// The same.
std::string blurFragmentShader(const BlurWeights& weights, BlurChannels channels, BlurReads reads);

} // namespace lamina
