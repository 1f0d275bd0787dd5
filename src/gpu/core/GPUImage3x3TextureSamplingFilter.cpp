#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

#include <initializer_list>

namespace lamina {

const char* const kGPUImageNearbyTexelSamplingVertexShaderString = R"(attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform float texelWidth;
uniform float texelHeight;

varying vec2 textureCoordinate;
varying vec2 leftTextureCoordinate;
varying vec2 rightTextureCoordinate;
varying vec2 topTextureCoordinate;
varying vec2 topLeftTextureCoordinate;
varying vec2 topRightTextureCoordinate;
varying vec2 bottomTextureCoordinate;
varying vec2 bottomLeftTextureCoordinate;
varying vec2 bottomRightTextureCoordinate;

void main()
{
    gl_Position = position;

    vec2 widthStep = vec2(texelWidth, 0.0);
    vec2 heightStep = vec2(0.0, texelHeight);
    vec2 widthHeightStep = vec2(texelWidth, texelHeight);
    vec2 widthNegativeHeightStep = vec2(texelWidth, -texelHeight);

    textureCoordinate = inputTextureCoordinate.xy;
    leftTextureCoordinate = inputTextureCoordinate.xy - widthStep;
    rightTextureCoordinate = inputTextureCoordinate.xy + widthStep;
    topTextureCoordinate = inputTextureCoordinate.xy - heightStep;
    topLeftTextureCoordinate = inputTextureCoordinate.xy - widthHeightStep;
    topRightTextureCoordinate = inputTextureCoordinate.xy + widthNegativeHeightStep;
    bottomTextureCoordinate = inputTextureCoordinate.xy + heightStep;
    bottomLeftTextureCoordinate = inputTextureCoordinate.xy - widthNegativeHeightStep;
    bottomRightTextureCoordinate = inputTextureCoordinate.xy + widthHeightStep;
}
)";

namespace {

// The sampler's own precision, low if nothing is said, is that of what is read: sums and thresholds need more.
constexpr const char* kHead = R"(precision highp float;

uniform highp sampler2D inputImageTexture;

varying vec2 textureCoordinate;
varying vec2 leftTextureCoordinate;
varying vec2 rightTextureCoordinate;
varying vec2 topTextureCoordinate;
varying vec2 topLeftTextureCoordinate;
varying vec2 topRightTextureCoordinate;
varying vec2 bottomTextureCoordinate;
varying vec2 bottomLeftTextureCoordinate;
varying vec2 bottomRightTextureCoordinate;
)";

struct ValueText {
    const char* type;
    const char* component;
};

ValueText textOf(NeighbourValue value)
{
    switch (value) {
    case NeighbourValue::Red:
        return {"float", ".r"};
    case NeighbourValue::Rgb:
        return {"vec3", ".rgb"};
    case NeighbourValue::Rgba:
        break;
    }
    return {"vec4", ""};
}

constexpr const char* kMain = R"(
void main()
{
    vec4 color = texture2D(inputImageTexture, textureCoordinate);
)";

} // namespace

GPUImage3x3TextureSamplingFilter::GPUImage3x3TextureSamplingFilter(const std::string& fragmentShader)
    : TexelSampling<GPUImageFilter>(kGPUImageNearbyTexelSamplingVertexShaderString, fragmentShader)
{
}

std::string neighbourhoodShader(NeighbourValue value, const std::string& declarations, const std::string& statements)
{
    const auto [type, component] = textOf(value);
    std::string text = kHead + declarations + kMain;
    for (const char* name : {"topLeft", "top", "topRight", "left", "right", "bottomLeft", "bottom", "bottomRight"}) {
        text.append("    ").append(type).append(" ").append(name).append(" = texture2D(inputImageTexture, ");
        text.append(name).append("TextureCoordinate)").append(component).append(";\n");
    }
    return text + statements + "}\n";
}

} // namespace lamina
