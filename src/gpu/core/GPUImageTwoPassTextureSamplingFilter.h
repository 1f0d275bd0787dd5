#pragma once

#include "gpu/core/GPUImageTwoPassFilter.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

#include <string>

namespace lamina {

/// Two passes that sample along a line: the first downwards, the second across. Both vertex shaders get
/// `texelWidthOffset` and `texelHeightOffset`, the step from one sample to the next in texture coordinates. A first
/// pass whose input lies turned steps along the other axis, so that the picture is sampled downwards all the same.
class GPUImageTwoPassTextureSamplingFilter : public GPUImageTwoPassFilter {
public:
    GPUImageTwoPassTextureSamplingFilter(const std::string& firstStageVertexShader,
                                         const std::string& firstStageFragmentShader,
                                         const std::string& secondStageVertexShader,
                                         const std::string& secondStageFragmentShader);

    /// Steps in texels; 1 at first.
    double verticalTexelSpacing() const { return m_verticalTexelSpacing; }
    void setVerticalTexelSpacing(double texels);
    double horizontalTexelSpacing() const { return m_horizontalTexelSpacing; }
    void setHorizontalTexelSpacing(double texels);

    void setupFilterForSize(CGSize filterFrameSize) override;
    void setUniformsForProgramAtIndex(int programIndex) override;

protected:
    /// Steps lead from texel to texel of an input that lies on the grid: what reads at whole numbers of them reads
    /// centres.
    bool stepsAreWholeTexels() const;
    /// Reads the locations of the offsets; again after a program has been replaced. On the queue.
    void readOffsetUniforms();

    struct Offsets {
        GLint widthUniform = -1;
        GLint heightUniform = -1;
        float width = 0;
        float height = 0;
    };
    Offsets m_verticalPass;
    Offsets m_horizontalPass;
    double m_verticalTexelSpacing = 1;
    double m_horizontalTexelSpacing = 1;
};

} // namespace lamina
