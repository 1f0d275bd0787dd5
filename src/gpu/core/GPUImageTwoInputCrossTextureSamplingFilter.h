#pragma once

#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/core/TexelSampling.h"
#include "platform/gl/GLHeaders.h"

#include <string>

namespace lamina {

/// The base of filters of two pictures that look at a pixel of both and at its neighbours on the left, the right, above
/// and below. Fragment shaders get the places in slot 0 as the varyings `textureCoordinate`, `leftTextureCoordinate`,
/// `rightTextureCoordinate`, `topTextureCoordinate` and `bottomTextureCoordinate`, those in slot 1 as the same names
/// with a 2 behind.
///
/// One pixel means one of the output, which has the size of slot 0, in both. Where an input lies turned, the way to its
/// neighbours turns with it.
class GPUImageTwoInputCrossTextureSamplingFilter : public TexelSampling<GPUImageTwoInputFilter> {
public:
    explicit GPUImageTwoInputCrossTextureSamplingFilter(const std::string& fragmentShader);

    void setUniformsForProgramAtIndex(int programIndex) override;

private:
    /// The way to the neighbours in one slot.
    struct StepUniforms {
        GLint width;
        GLint height;
    };
    void tellSteps(const StepUniforms& uniforms, bool turned) const;

    StepUniforms m_first;
    StepUniforms m_second;
};

} // namespace lamina
