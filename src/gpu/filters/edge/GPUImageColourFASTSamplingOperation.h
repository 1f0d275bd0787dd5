#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/core/TexelSampling.h"

namespace lamina {

/// How a pixel of the first picture differs in colour from a circle of eight points of the second, which is a blurred
/// one, and where the circle is brighter.
///
///   points = (3, 1), (1, 3), (-1, 3), (-3, 1), (-3, -1), (-1, -3), (1, -3), (3, -1) pixels away, y downwards
///   d = 0.125 * sum of in2.rgb(p + point) - in.rgb(p)
///   (x, y) = sum of |d| . in2.rgb(p + point) * point / sqrt(10)
///   out = ((d + 1) / 2, atan(y, x) / (2 pi) + 1/2)
///
/// so that every channel counts for the direction as much as it differs; point / sqrt(10) has the components 0.94868
/// and 0.316227. Both pictures straight, as stored. Alpha tells the direction, from the left (0) clockwise over the top
/// (0.25), the right (0.5) and the bottom (0.75); 0.5 where there is none.
class GPUImageColourFASTSamplingOperation : public TexelSampling<GPUImageTwoInputFilter> {
public:
    static FilterDescription describe();

    GPUImageColourFASTSamplingOperation();

    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;

protected:
    bool liesTurned() const override { return m_blurredLiesTurned; }

private:
    bool m_blurredLiesTurned = false;
};

} // namespace lamina
