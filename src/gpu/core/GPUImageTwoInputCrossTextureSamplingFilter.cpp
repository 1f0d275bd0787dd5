#include "gpu/core/GPUImageTwoInputCrossTextureSamplingFilter.h"

namespace lamina {

namespace {

constexpr const char* kVertexShader = R"(
attribute vec4 position;
attribute vec4 inputTextureCoordinate;
attribute vec4 inputTextureCoordinate2;

uniform float texelWidth;
uniform float texelHeight;
uniform float texelWidth2;
uniform float texelHeight2;

varying vec2 textureCoordinate;
varying vec2 leftTextureCoordinate;
varying vec2 rightTextureCoordinate;
varying vec2 topTextureCoordinate;
varying vec2 bottomTextureCoordinate;

varying vec2 textureCoordinate2;
varying vec2 leftTextureCoordinate2;
varying vec2 rightTextureCoordinate2;
varying vec2 topTextureCoordinate2;
varying vec2 bottomTextureCoordinate2;

void main()
{
    gl_Position = position;

    vec2 across = vec2(texelWidth, 0.0);
    vec2 down = vec2(0.0, texelHeight);
    textureCoordinate = inputTextureCoordinate.xy;
    leftTextureCoordinate = textureCoordinate - across;
    rightTextureCoordinate = textureCoordinate + across;
    topTextureCoordinate = textureCoordinate - down;
    bottomTextureCoordinate = textureCoordinate + down;

    vec2 across2 = vec2(texelWidth2, 0.0);
    vec2 down2 = vec2(0.0, texelHeight2);
    textureCoordinate2 = inputTextureCoordinate2.xy;
    leftTextureCoordinate2 = textureCoordinate2 - across2;
    rightTextureCoordinate2 = textureCoordinate2 + across2;
    topTextureCoordinate2 = textureCoordinate2 - down2;
    bottomTextureCoordinate2 = textureCoordinate2 + down2;
}
)";

} // namespace

GPUImageTwoInputCrossTextureSamplingFilter::GPUImageTwoInputCrossTextureSamplingFilter(
    const std::string& fragmentShader)
    : TexelSampling<GPUImageTwoInputFilter>(kVertexShader, fragmentShader)
    , m_first{uniformIndex("texelWidth"), uniformIndex("texelHeight")}
    , m_second{uniformIndex("texelWidth2"), uniformIndex("texelHeight2")}
{
}

void GPUImageTwoInputCrossTextureSamplingFilter::tellSteps(const StepUniforms& uniforms, bool turned) const
{
    glUniform1f(uniforms.width, turned ? texelHeight() : texelWidth());
    glUniform1f(uniforms.height, turned ? texelWidth() : texelHeight());
}

void GPUImageTwoInputCrossTextureSamplingFilter::setUniformsForProgramAtIndex(int programIndex)
{
    TexelSampling<GPUImageTwoInputFilter>::setUniformsForProgramAtIndex(programIndex);
    const auto liesTurned = [this](int slot) { return rotatedSize({1, 2}, slot).width == 2; };
    // What a first pass has drawn lies upright.
    tellSteps(m_first, programIndex == 0 && liesTurned(0));
    tellSteps(m_second, liesTurned(1));
}

} // namespace lamina
