#include "gpu/filters/color/GPUImageFalseColorFilter.h"
#include "gpu/kernels/ColorKernels.h"

#include "gpu/filters/color/ColorShaders.h"

#include <cstddef>
#include <span>

namespace lamina {

namespace {

constexpr GPUVector4 kFirst{0, 0, 0.5F, 1};
constexpr GPUVector4 kSecond{1, 0, 0, 1};

constexpr const char* kUniforms = R"(
uniform vec3 firstColor;
uniform vec3 secondColor;
)";

constexpr const char* kStatements = R"(
    gl_FragColor = vec4(mix(firstColor, secondColor, luminanceOf(color.rgb)), color.a);
)";

} // namespace

GPUImageFalseColorFilter::GPUImageFalseColorFilter()
    : GPUImageFilter(colorShader(kUniforms, kStatements))
    , m_firstColorUniform(uniformIndex("firstColor"))
    , m_secondColorUniform(uniformIndex("secondColor"))
{
    setFirstColor(kFirst);
    setSecondColor(kSecond);
}

FilterDescription GPUImageFalseColorFilter::describe()
{
    using Self = GPUImageFalseColorFilter;
    return filterDescription<Self>("GPUImageFalseColorFilter", "colour", 1,
                                   "One colour for dark, another for bright, and their mixtures between",
                                   {filterProperty("firstColor", &Self::setFirstColor, kFirst, {0, 1}, "",
                                                   "What black becomes; the fourth number has no effect"),
                                    filterProperty("secondColor", &Self::setSecondColor, kSecond, {0, 1}, "",
                                                   "What white becomes; the fourth number has no effect")});
}

void GPUImageFalseColorFilter::setFirstColor(const GPUVector4& color)
{
    m_firstColor = color;
    setVec3({color.one, color.two, color.three}, m_firstColorUniform, m_filterProgram);
}

void GPUImageFalseColorFilter::setSecondColor(const GPUVector4& color)
{
    m_secondColor = color;
    setVec3({color.one, color.two, color.three}, m_secondColorUniform, m_filterProgram);
}

FilterKernel GPUImageFalseColorFilter::kernel() const
{
    const std::span<const float> first = uniformValues(m_firstColorUniform);
    const std::span<const float> second = uniformValues(m_secondColorUniform);
    if (first.empty() || second.empty())
        return {};
    kernels::ColorMatrix matrix = kernels::kSameColors;
    for (std::size_t c = 0; c < 3; ++c) {
        const float range = second[c] - first[c];
        matrix[c] = {0.2125F * range, 0.7154F * range, 0.0721F * range, 0, first[c]};
    }
    return kernels::matrixKernel(matrix);
}

} // namespace lamina
