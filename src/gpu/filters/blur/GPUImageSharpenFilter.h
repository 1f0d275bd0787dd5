#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blur/PixelStepFilter.h"

namespace lamina {

/// Sharpens by what a pixel has before its four neighbours (the Laplacian; Gonzalez and Woods, Digital Image
/// Processing, chapter 3).
///
///   out.rgb = (1 + 4 sharpness) in.rgb - sharpness (left + right + top + bottom).rgb,   out.a = in.a
///
/// on straight values as stored; the result is cut to 0 to 1. Beyond the border the outermost pixels go on.
class GPUImageSharpenFilter : public PixelStepFilter {
public:
    static FilterDescription describe();

    GPUImageSharpenFilter();

    /// 0 at first, the picture as it is; below 0 it is softened.
    float sharpness() const { return m_sharpness; }
    void setSharpness(float sharpness);

private:
    GLint m_sharpnessUniform;
    float m_sharpness = 0;
};

} // namespace lamina
