#include "gpu/filters/color/ColorValueFilter.h"

#include "gpu/filters/color/ColorShaders.h"

#include <span>

namespace lamina {

ColorValueFilter::ColorValueFilter(const std::string& uniform, const std::string& statements, float value,
                                   KernelFor kernelFor)
    : GPUImageFilter(colorShader("uniform float " + uniform + ";\n", statements))
    , m_uniform(uniformIndex(uniform.c_str()))
    , m_kernelFor(kernelFor)
{
    setValue(value);
}

FilterKernel ColorValueFilter::kernel() const
{
    const std::span<const float> value = uniformValues(m_uniform);
    return m_kernelFor && !value.empty() ? m_kernelFor(value[0]) : FilterKernel();
}

void ColorValueFilter::setValue(float value)
{
    m_value = value;
    setFloat(value, m_uniform, m_filterProgram);
}

} // namespace lamina
