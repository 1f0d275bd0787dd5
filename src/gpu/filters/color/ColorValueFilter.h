#pragma once

#include "gpu/core/GPUImageFilter.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/gl/GLHeaders.h"

#include <string>

namespace lamina {

/// The base of filters that change each pixel by itself, and by one number.
class ColorValueFilter : public GPUImageFilter {
protected:
    /// What the filter does without GL, for a number.
    using KernelFor = FilterKernel (*)(float value);
    /// `statements`: as of `colorShader`, with the number as the uniform of this name.
    ColorValueFilter(const std::string& uniform, const std::string& statements, float value,
                     KernelFor kernelFor = nullptr);

    FilterKernel kernel() const override;

    float value() const { return m_value; }
    void setValue(float value);

private:
    GLint m_uniform;
    KernelFor m_kernelFor;
    float m_value = 0;
};

} // namespace lamina
