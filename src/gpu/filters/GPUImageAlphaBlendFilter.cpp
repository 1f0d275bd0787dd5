// The operator "over" on straight colours, with the base taken for opaque (Porter and Duff, Compositing Digital Images,
// 1984).

#include "gpu/filters/GPUImageAlphaBlendFilter.h"

namespace lamina {

namespace {

constexpr const char* kAlphaBlendFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
uniform highp sampler2D inputImageTexture;
uniform highp sampler2D inputImageTexture2;
uniform float mixturePercent;

void main()
{
    vec4 base = texture2D(inputImageTexture, textureCoordinate);
    vec4 overlay = texture2D(inputImageTexture2, textureCoordinate2);
    gl_FragColor = vec4(mix(base.rgb, overlay.rgb, overlay.a * mixturePercent), base.a);
}
)";

} // namespace

GPUImageAlphaBlendFilter::GPUImageAlphaBlendFilter()
    : MixtureBlendFilter(kAlphaBlendFragmentShader)
{
}

FilterDescription GPUImageAlphaBlendFilter::describe()
{
    return filterDescription<GPUImageAlphaBlendFilter>(
        "GPUImageAlphaBlendFilter", "blend", 2, "Lays the second picture over the first by its alpha", {mixProperty()});
}

} // namespace lamina
