#include "gpu/filters/color/ColorValueFilter.h"

#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

ColorValueFilter::ColorValueFilter(const std::string& uniform, const std::string& statements, float value)
    : GPUImageFilter(colorShader("uniform float " + uniform + ";\n", statements))
    , m_uniform(uniformIndex(uniform.c_str()))
{
    setValue(value);
}

void ColorValueFilter::setValue(float value)
{
    m_value = value;
    setFloat(value, m_uniform, m_filterProgram);
}

} // namespace lamina
