#include "gpu/filters/GPUImageDissolveBlendFilter.h"

namespace lamina {

namespace {

constexpr const char* kDissolveBlendFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
uniform sampler2D inputImageTexture;
uniform sampler2D inputImageTexture2;
uniform float mixturePercent;

void main()
{
    vec4 base = texture2D(inputImageTexture, textureCoordinate);
    vec4 overlay = texture2D(inputImageTexture2, textureCoordinate2);
    gl_FragColor = mix(base, overlay, mixturePercent);
}
)";

} // namespace

GPUImageDissolveBlendFilter::GPUImageDissolveBlendFilter()
    : GPUImageTwoInputFilter(kDissolveBlendFragmentShader)
    , m_mixUniform(uniformIndex("mixturePercent"))
{
    setMix(0.5F);
}

FilterDescription GPUImageDissolveBlendFilter::describe()
{
    return filterDescription<GPUImageDissolveBlendFilter>(
        "GPUImageDissolveBlendFilter", "blend", 2, "Fades from the first picture to the second",
        {filterProperty("mix", &GPUImageDissolveBlendFilter::setMix, 0.5F, {0, 1}, "", "Share of the second picture")});
}

void GPUImageDissolveBlendFilter::setMix(float mix)
{
    m_mix = mix;
    setFloat(mix, m_mixUniform, m_filterProgram);
}

} // namespace lamina
