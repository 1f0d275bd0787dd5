#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"

#include <memory>

namespace lamina {

class GPUImageDirectionalNonMaximumSuppressionFilter;
class GPUImageDirectionalSobelEdgeDetectionFilter;
class GPUImageSingleComponentGaussianBlurFilter;

/// White lines of one pixel along the edges of a picture, black and opaque elsewhere: Canny's edge finder.
///
/// In line: `GPUImageGrayscaleFilter`, `GPUImageSingleComponentGaussianBlurFilter`,
/// `GPUImageDirectionalSobelEdgeDetectionFilter`, `GPUImageDirectionalNonMaximumSuppressionFilter`,
/// `GPUImageWeakPixelInclusionFilter`. The thresholds start closer to 0 than the third's own.
///
/// Steepness is held in 8 bits and ends at 1: an edge of strong contrast is a few pixels of equal steepness, of which
/// the first on its dark side stays, so that its line may lie up to 1.5 pixels beside it.
class GPUImageCannyEdgeDetectionFilter : public GPUImageFilterGroup {
public:
    static FilterDescription describe();

    GPUImageCannyEdgeDetectionFilter();

    /// As of `GPUImageGaussianBlurFilter`: 2 at first. More finds coarser edges only.
    float blurRadiusInPixels() const;
    void setBlurRadiusInPixels(float pixels);
    /// Distance of the blur's samples in pixels, 1 at first.
    float blurTexelSpacingMultiplier() const;
    void setBlurTexelSpacingMultiplier(float pixels);
    /// The steepness from which an edge is sure, 0.4 at first.
    float upperThreshold() const;
    void setUpperThreshold(float threshold);
    /// The steepness up to which there is none, 0.1 at first. In between an edge shows where it goes on.
    float lowerThreshold() const;
    void setLowerThreshold(float threshold);
    /// The way to the neighbours that are compared, as `TexelSampling` tells it.
    float texelWidth() const;
    void setTexelWidth(float share);
    /// The same downwards.
    float texelHeight() const;
    void setTexelHeight(float share);

private:
    std::shared_ptr<GPUImageSingleComponentGaussianBlurFilter> m_blur;
    std::shared_ptr<GPUImageDirectionalSobelEdgeDetectionFilter> m_edges;
    std::shared_ptr<GPUImageDirectionalNonMaximumSuppressionFilter> m_thinning;
};

} // namespace lamina
