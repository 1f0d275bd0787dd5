#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoPassFilter.h"
#include "gpu/core/TexelSampling.h"
#include "gpu/filters/edge/GradientShader.h"
#include "platform/gl/GLHeaders.h"

#include <string>
#include <vector>

namespace lamina {

/// Bright edges on black: how steep the luminance is.
///
///   Y = 0.2125 red + 0.7154 green + 0.0721 blue, kept in 8 bits
///   out.rgb = edgeStrength * sqrt(gx^2 + gy^2),   out.a = in.a
///
/// with the gradient (gx, gy) of `gradientShader`, by Sobel's operator: up to 4.5 for an edge from black to white.
/// `in` straight, as stored; the result is cut to 1. The base of the other filters of edges, which make something else
/// of the same two passes.
class GPUImageSobelEdgeDetectionFilter : public TexelSampling<GPUImageTwoPassFilter> {
public:
    static FilterDescription describe();

    GPUImageSobelEdgeDetectionFilter();

    /// What the steepness is multiplied by: 1 at first, 0 shows no edges. Any number from 0.
    float edgeStrength() const { return m_edgeStrength; }
    void setEdgeStrength(float strength);

protected:
    /// The steepness as Sobel's filter shows it.
    explicit GPUImageSobelEdgeDetectionFilter(EdgeOperator edgeOperator);
    /// `statements`: as of `gradientShader`, which also find the uniform `edgeStrength`; `color` is the grey picture's.
    GPUImageSobelEdgeDetectionFilter(EdgeOperator edgeOperator, const std::string& declarations,
                                     const std::string& statements);

    static std::vector<FilterProperty> properties();

private:
    GLint m_edgeStrengthUniform;
    float m_edgeStrength = 0;
};

} // namespace lamina
