#include "gpu/filters/color/GPUImageSolidColorGenerator.h"

#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

namespace {

constexpr GPUVector4 kBlack{0, 0, 0, 1};

constexpr const char* kUniforms = R"(
uniform vec3 fillColor;
uniform float useExistingAlpha;
)";

constexpr const char* kStatements = R"(
    gl_FragColor = vec4(fillColor, max(color.a, 1.0 - useExistingAlpha));
)";

} // namespace

GPUImageSolidColorGenerator::GPUImageSolidColorGenerator()
    : GPUImageFilter(colorShader(kUniforms, kStatements))
    , m_colorUniform(uniformIndex("fillColor"))
    , m_useExistingAlphaUniform(uniformIndex("useExistingAlpha"))
{
    setColor(kBlack);
    setUseExistingAlpha(false);
}

FilterDescription GPUImageSolidColorGenerator::describe()
{
    using Self = GPUImageSolidColorGenerator;
    return asGenerator(filterDescription<Self>(
        "GPUImageSolidColorGenerator", "colour", 1, "One colour all over",
        {filterProperty("color", &Self::setColor, kBlack, {0, 1}, "", "The colour; the fourth number has no effect"),
         filterProperty("useExistingAlpha", &Self::setUseExistingAlpha, false, {}, "",
                        "1 keeps the picture's shape, 0 fills everything")}));
}

void GPUImageSolidColorGenerator::setColor(const GPUVector4& color)
{
    m_color = color;
    setVec3({color.one, color.two, color.three}, m_colorUniform, m_filterProgram);
}

void GPUImageSolidColorGenerator::setUseExistingAlpha(bool use)
{
    m_useExistingAlpha = use;
    setFloat(use ? 1.0F : 0.0F, m_useExistingAlphaUniform, m_filterProgram);
}

} // namespace lamina
