#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// One colour all over, of the input's size; in the input's shape, where its alpha is to be used.
///
///   out.rgb = color,   out.a = in.a with the existing alpha, else 1
///
/// Straight, as stored. Default: black, without the existing alpha.
class GPUImageSolidColorGenerator : public GPUImageFilter {
public:
    GPUImageSolidColorGenerator();
    static FilterDescription describe();

    /// Red, green, blue; the fourth number is kept and used by nobody.
    const GPUVector4& color() const { return m_color; }
    void setColor(const GPUVector4& color);
    bool useExistingAlpha() const { return m_useExistingAlpha; }
    void setUseExistingAlpha(bool use);

private:
    GLint m_colorUniform;
    GLint m_useExistingAlphaUniform;
    GPUVector4 m_color;
    bool m_useExistingAlpha = false;
};

} // namespace lamina
