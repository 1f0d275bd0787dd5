#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blur/BlurMixture.h"

namespace lamina {

/// How every pixel differs in colour from its surroundings, and which way: `GPUImageColourFASTSamplingOperation` of a
/// picture and the picture after `GPUImageBoxBlurFilter`, of 3 pixels at first. Grey with alpha 0.5 where all is even.
class GPUImageColourFASTFeatureDetector : public BlurMixture {
public:
    static FilterDescription describe();

    GPUImageColourFASTFeatureDetector();
};

} // namespace lamina
