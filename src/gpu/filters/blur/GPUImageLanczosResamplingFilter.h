#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoPassTextureSamplingFilter.h"
#include "platform/base/CGGeometry.h"

namespace lamina {

/// Makes pictures smaller without jagged edges: weighs neighbours by Lanczos' window, which dips below 0 and so keeps
/// edges crisp (Duchon, Lanczos Filtering in One and Two Dimensions, 1979).
///
///   out(p) = sum over |i| <= 3 of w(|i|) in(p + i step) / 1.04284   downwards, then the same across
///   w      = 0.38026, 0.27667, 0.08074, -0.02612
///
/// on all four channels, straight, as stored; p runs over the pixels of the output, places between pixels of the input
/// are interpolated. The divisor is the sum of all weights: an even colour stays. A step is one pixel of the input, or
/// as `originalImageSize` says. Beyond the border the outermost pixels go on.
///
/// The size of the output is asked for with `forceProcessingAtSize` or `forceProcessingAtSizeRespectingAspectRatio`;
/// without, it is the input's, which is softened a little. Meant for a half to a quarter of the size: the window does
/// not widen with it.
class GPUImageLanczosResamplingFilter : public GPUImageTwoPassTextureSamplingFilter {
public:
    static FilterDescription describe();

    GPUImageLanczosResamplingFilter();

    /// The size in whose pixels the samples lie apart, as the picture is seen upright. 0 x 0 at first: the input's own.
    /// A smaller one takes the window wider. From any thread; waits for the queue.
    CGSize originalImageSize() const;
    void setOriginalImageSize(CGSize size);

    void setInputSize(CGSize size, int textureIndex) override;
    void setupFilterForSize(CGSize filterFrameSize) override;

protected:
    /// Between the passes the picture has its new height and its old width.
    CGSize sizeOfPass(int index) const override;

private:
    CGSize m_originalImageSize;
    CGSize m_sizeOfInput; ///< upright
};

} // namespace lamina
