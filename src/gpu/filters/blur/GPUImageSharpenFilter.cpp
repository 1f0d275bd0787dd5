#include "gpu/filters/blur/GPUImageSharpenFilter.h"

namespace lamina {

namespace {

constexpr float kStart = 0;

constexpr const char* kVertexShader = R"(attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform float imageWidthFactor;
uniform float imageHeightFactor;

varying vec2 textureCoordinate;
varying vec2 leftTextureCoordinate;
varying vec2 rightTextureCoordinate;
varying vec2 topTextureCoordinate;
varying vec2 bottomTextureCoordinate;

void main()
{
    vec2 across = vec2(imageWidthFactor, 0.0);
    vec2 down = vec2(0.0, imageHeightFactor);

    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy;
    leftTextureCoordinate = inputTextureCoordinate.xy - across;
    rightTextureCoordinate = inputTextureCoordinate.xy + across;
    topTextureCoordinate = inputTextureCoordinate.xy - down;
    bottomTextureCoordinate = inputTextureCoordinate.xy + down;
}
)";

constexpr const char* kFragmentShader = R"(precision highp float;

varying vec2 textureCoordinate;
varying vec2 leftTextureCoordinate;
varying vec2 rightTextureCoordinate;
varying vec2 topTextureCoordinate;
varying vec2 bottomTextureCoordinate;
uniform highp sampler2D inputImageTexture;
uniform float sharpness;

void main()
{
    vec4 color = texture2D(inputImageTexture, textureCoordinate);
    vec3 neighbours = texture2D(inputImageTexture, leftTextureCoordinate).rgb +
                      texture2D(inputImageTexture, rightTextureCoordinate).rgb +
                      texture2D(inputImageTexture, topTextureCoordinate).rgb +
                      texture2D(inputImageTexture, bottomTextureCoordinate).rgb;
    gl_FragColor = vec4((1.0 + 4.0 * sharpness) * color.rgb - sharpness * neighbours, color.a);
}
)";

} // namespace

GPUImageSharpenFilter::GPUImageSharpenFilter()
    : PixelStepFilter(kVertexShader, kFragmentShader, "imageWidthFactor", "imageHeightFactor")
    , m_sharpnessUniform(uniformIndex("sharpness"))
{
    setSharpness(kStart);
}

void GPUImageSharpenFilter::setSharpness(float sharpness)
{
    m_sharpness = sharpness;
    setFloat(sharpness, m_sharpnessUniform, m_filterProgram);
}

FilterDescription GPUImageSharpenFilter::describe()
{
    using Self = GPUImageSharpenFilter;
    return filterDescription<Self>("GPUImageSharpenFilter", "blur", 1,
                                   "Sharpens, or softens, by the nearest neighbours",
                                   {filterProperty("sharpness", &Self::setSharpness, kStart, {-0.2, 4}, "",
                                                   "0 is the picture as it is, above sharper, below softer")});
}

} // namespace lamina
