#pragma once

#include "gpu/core/FilterProgram.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/kernels/KernelFrame.h"

namespace lamina {

/// Shades of grey.
///
///   out = (Y, Y, Y, alpha),   Y = 0.2125 red + 0.7154 green + 0.0721 blue
///
/// Luma weights of Rec. ITU-R BT.709 in an older rounding, on stored values. It wants one channel and gives one; where
/// one channel comes in it is grey already, and nothing is drawn.
class GPUImageGrayscaleFilter : public GPUImageFilter {
public:
    GPUImageGrayscaleFilter();
    static FilterDescription describe();

    bool wantsMonochromeInput() const override { return true; }
    bool providesMonochromeOutput() const override { return true; }
    /// With monochrome input not even the input's count is given back: who pushes such frames keeps them.
    void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                     const QuadCoordinates& textureCoordinates) override;

protected:
    FilterKernel kernel() const override;
};

} // namespace lamina
