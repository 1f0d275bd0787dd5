#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blur/BlurMixture.h"

namespace lamina {

/// Black and white by the surroundings: print and handwriting stay readable where the light is uneven (Bradley and
/// Roth, Adaptive Thresholding Using the Integral Image, 2007, after Wellner, 1993).
///
///   out.rgb = 1 where Y >= blurred Y - 0.05, else 0,   out.a = in.a
///
/// Y is `GPUImageGrayscaleFilter`'s, blurred by `GPUImageBoxBlurFilter` of 4 pixels at first, which is to be wider than
/// the strokes.
class GPUImageAdaptiveThresholdFilter : public BlurMixture {
public:
    static FilterDescription describe();

    GPUImageAdaptiveThresholdFilter();

    /// What comes in is drawn in grey here, and has to be colour for that.
    bool wantsMonochromeInput() const override { return false; }
};

} // namespace lamina
