#pragma once

#include "gpu/core/FilterProgram.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoPassTextureSamplingFilter.h"
#include "gpu/filters/blur/BlurShaders.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/base/CGGeometry.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace lamina {

/// Blurs with a Gaussian bell, in two passes: downwards, then across.
///
///   out(p) = sum over |i| <= n of w(|i|) * in(p + i * step),   w(i) ~ exp(-i^2 / (2 sigma^2)),   w(0) + 2 w(1) + ... =
///   1
///
/// on all four channels alike; `in` straight, as stored. sigma is `blurRadiusInPixels`, step is one pixel times
/// `texelSpacingMultiplier`. n is the distance where the bell, before it is scaled to the sum of 1, falls below 1/256,
/// rounded up to an even number; it grows up to 62 pixels (at sigma 62) and stays there, which bounds the length of the
/// shaders: a larger sigma then only flattens the bell. Beyond the border the outermost pixels go on.
///
/// The shaders are made for each radius and let the texture unit weigh two neighbours in one read, so a radius costs a
/// new program the first time it is used and none later. (Where the processor draws, each neighbour is read by itself.)
/// A new filter has sigma 2 cut at n = 4, narrower than what
/// setting another radius and then 2 again gives (n = 6); looks are tuned to it.
///
/// Setters may be called from any thread, one at a time; they wait for the video processing queue.
class GPUImageGaussianBlurFilter : public GPUImageTwoPassTextureSamplingFilter {
public:
    static FilterDescription describe();

    GPUImageGaussianBlurFilter();

    /// Distance of the samples in pixels, 1 at first. More than 1 blurs wider for the same cost, with a visible grid.
    float texelSpacingMultiplier() const { return m_texelSpacingMultiplier; }
    void setTexelSpacingMultiplier(float pixels);

    /// sigma in pixels, 2 at first: rounded to whole pixels, halves away from zero. Below 1 the picture passes through.
    /// Values that are no numbers are ignored. Ends the use of a fraction (below).
    float blurRadiusInPixels() const;
    void setBlurRadiusInPixels(float pixels);

    /// sigma as a share of the picture's width or height, 0 at first: not used. It is turned into `blurRadiusInPixels`
    /// when the size of the next picture is known, once: another size later keeps that radius until a fraction is set
    /// again. Setting one fraction clears the other; setting the very value that is set already ends its use. Negative
    /// values are ignored.
    float blurRadiusAsFractionOfImageWidth() const { return m_fractionOfWidth; }
    void setBlurRadiusAsFractionOfImageWidth(float fraction);
    float blurRadiusAsFractionOfImageHeight() const { return m_fractionOfHeight; }
    void setBlurRadiusAsFractionOfImageHeight(float fraction);

    /// How often the whole blur is done, each time on what came out before; 1 at first, less counts as 1.
    int blurPasses() const { return m_blurPasses; }
    void setBlurPasses(int passes);

    // Texts of the shaders that weigh `radius` neighbours on each side by the bell of `sigma`. Radius 0, or a sigma
    // that is not above 0: the plain texts that pass a picture on.

    /// Hands out the place of each neighbour.
    static std::string vertexShaderForStandardBlurOfRadius(unsigned blurRadius, double sigma);
    /// Reads each neighbour.
    static std::string fragmentShaderForStandardBlurOfRadius(unsigned blurRadius, double sigma);
    /// Hands out the places between pairs of neighbours.
    static std::string vertexShaderForOptimizedBlurOfRadius(unsigned blurRadius, double sigma);
    /// Reads two neighbours at once.
    static std::string fragmentShaderForOptimizedBlurOfRadius(unsigned blurRadius, double sigma);

    /// Replaces the shaders of both passes, until a radius is set. Waits for the queue.
    void switchToVertexShader(const std::string& vertexShader, const std::string& fragmentShader);

    void setupFilterForSize(CGSize filterFrameSize) override;
    void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                     const QuadCoordinates& textureCoordinates) override;

protected:
    FilterKernel kernel() const override;

    /// Neighbours on each side that a blur reads at most.
    static constexpr unsigned kLargestSampleRadius = 62;

    /// For other bells and other sums: the weights of a new filter, its `blurRadiusInPixels`, and what is summed.
    GPUImageGaussianBlurFilter(const BlurWeights& weights, float blurRadiusInPixels,
                               BlurChannels channels = BlurChannels::All);
    /// The weights for a whole, finite number of pixels, which may be below 1.
    virtual BlurWeights weightsForRadius(double pixels) const;
    /// A radius that is new: makes the shaders for its weights. On the queue.
    virtual void useRadius(double pixels);

    /// Neighbours on each side, and sigma, of a new filter.
    static constexpr unsigned kRadiusOfNewFilter = 4;
    static constexpr float kSigmaOfNewFilter = 2;

    void willDrawPass(int programIndex, bool onGrid) override;
    bool readsTexelCentres(int programIndex, std::size_t slot) const override;

    /// What a blur lets one set, starting from this radius.
    static std::vector<FilterProperty> properties(float blurRadiusInPixels);

private:
    GPUImageGaussianBlurFilter(const BlurWeights& weights, float blurRadiusInPixels, BlurChannels channels,
                               const std::array<BlurReads, 2>& reads);
    void setFraction(float& fraction, float value, float& other);
    void dropTheTurn();
    BlurReads readsFor(int programIndex, bool onGrid) const;
    void buildPass(int programIndex);

    // Some are written while a frame's size is being set: they are written on the queue alone.
    BlurChannels m_channels;
    BlurWeights m_weights; ///< of the present shaders; empty where they are somebody else's
    std::array<BlurReads, 2> m_reads;
    float m_texelSpacingMultiplier = 1;
    float m_blurRadiusInPixels = 2;
    float m_fractionOfWidth = 0;
    float m_fractionOfHeight = 0;
    int m_blurPasses = 1;
    bool m_shouldResizeBlurRadiusWithImageSize = false;
};

} // namespace lamina
