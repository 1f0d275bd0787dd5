#pragma once

#include "gpu/core/GPUImageFilter.h"
#include "platform/gl/GLHeaders.h"

#include <string>

namespace lamina {

/// The base of filters that change each pixel by itself, and by one number.
class ColorValueFilter : public GPUImageFilter {
protected:
    /// `statements`: as of `colorShader`, with the number as the uniform of this name.
    ColorValueFilter(const std::string& uniform, const std::string& statements, float value);

    float value() const { return m_value; }
    void setValue(float value);

private:
    GLint m_uniform;
    float m_value = 0;
};

} // namespace lamina
