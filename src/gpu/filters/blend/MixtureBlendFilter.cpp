#include "gpu/filters/blend/MixtureBlendFilter.h"

#include "gpu/filters/blend/BlendShader.h"

namespace lamina {

namespace {

constexpr float kMixOfNewFilter = 0.5F;

} // namespace

MixtureBlendFilter::MixtureBlendFilter(std::string_view result)
    : GPUImageTwoInputFilter(blendShader(result, "uniform float mixturePercent;\n"))
    , m_mixUniform(uniformIndex("mixturePercent"))
{
    setMix(kMixOfNewFilter);
}

void MixtureBlendFilter::setMix(float mix)
{
    m_mix = mix;
    setFloat(mix, m_mixUniform, m_filterProgram);
}

FilterProperty MixtureBlendFilter::mixProperty()
{
    return filterProperty("mix", &MixtureBlendFilter::setMix, kMixOfNewFilter, {0, 1}, "", "Share of the overlay");
}

} // namespace lamina
