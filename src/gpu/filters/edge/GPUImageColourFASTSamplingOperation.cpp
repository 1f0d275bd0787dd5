// The features of Ensor and Hall, ColourFAST: GPU-Based Feature Point Detection and Tracking on Mobile Devices, 2013:
// three differences of colour and an angle. How the channels are weighed for the angle is Lamina's own.

#include "gpu/filters/edge/GPUImageColourFASTSamplingOperation.h"

namespace lamina {

namespace {

constexpr const char* kVertexShader = R"(attribute vec4 position;
attribute vec4 inputTextureCoordinate;
attribute vec4 inputTextureCoordinate2;

uniform float texelWidth;
uniform float texelHeight;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
varying vec2 texelStep;

void main()
{
    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy;
    textureCoordinate2 = inputTextureCoordinate2.xy;
    texelStep = vec2(texelWidth, texelHeight);
}
)";

// Differences below half a step of 8 bits are none: linear reads between texels are off by as much.
constexpr const char* kFragmentShader = R"(precision highp float;

uniform highp sampler2D inputImageTexture;
uniform highp sampler2D inputImageTexture2;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
varying vec2 texelStep;

vec3 point(float x, float y)
{
    return texture2D(inputImageTexture2, textureCoordinate2 + vec2(x, y) * texelStep).rgb;
}

void main()
{
    vec3 a = point(3.0, 1.0);
    vec3 b = point(1.0, 3.0);
    vec3 c = point(-1.0, 3.0);
    vec3 d = point(-3.0, 1.0);
    vec3 e = point(-3.0, -1.0);
    vec3 f = point(-1.0, -3.0);
    vec3 g = point(1.0, -3.0);
    vec3 h = point(3.0, -1.0);

    vec3 difference = (a + b + c + d + e + f + g + h) * 0.125 - texture2D(inputImageTexture, textureCoordinate).rgb;
    vec3 across = 0.94868 * (a - d - e + h) + 0.316227 * (b - c - f + g);
    vec3 down = 0.94868 * (b + c - f - g) + 0.316227 * (a + d - e - h);

    vec3 weight = abs(difference);
    vec2 direction = vec2(dot(across, weight), dot(down, weight));
    float turn = length(direction) < 0.00002 ? 0.0 : atan(direction.y, direction.x) / 6.2831853;
    gl_FragColor = vec4((difference + 1.0) / 2.0, turn + 0.5);
}
)";

} // namespace

GPUImageColourFASTSamplingOperation::GPUImageColourFASTSamplingOperation()
    : TexelSampling<GPUImageTwoInputFilter>(kVertexShader, kFragmentShader)
{
}

void GPUImageColourFASTSamplingOperation::setInputRotation(GPUImageRotationMode rotation, int textureIndex)
{
    if (textureIndex == 1)
        m_blurredLiesTurned = swapsWidthAndHeight(rotation);
    GPUImageTwoInputFilter::setInputRotation(rotation, textureIndex);
}

FilterDescription GPUImageColourFASTSamplingOperation::describe()
{
    return filterDescription<GPUImageColourFASTSamplingOperation>(
        "GPUImageColourFASTSamplingOperation", "detection", 2,
        "How a pixel differs from a circle around it, and which way; alpha tells the angle", texelProperties(), {},
        {"base", "blurred"});
}

} // namespace lamina
