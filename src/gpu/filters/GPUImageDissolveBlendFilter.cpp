// A linear cross-fade (Porter and Duff, Compositing Digital Images, 1984: "dissolve" and "plus").

#include "gpu/filters/GPUImageDissolveBlendFilter.h"

namespace lamina {

namespace {

constexpr const char* kDissolveBlendFragmentShader = R"(
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
    gl_FragColor = mix(base, overlay, mixturePercent);
}
)";

} // namespace

GPUImageDissolveBlendFilter::GPUImageDissolveBlendFilter()
    : MixtureBlendFilter(kDissolveBlendFragmentShader)
{
}

FilterDescription GPUImageDissolveBlendFilter::describe()
{
    return filterDescription<GPUImageDissolveBlendFilter>(
        "GPUImageDissolveBlendFilter", "blend", 2, "Fades from the first picture to the second", {mixProperty()});
}

} // namespace lamina
