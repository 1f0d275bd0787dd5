#include "gpu/core/GPUImageFourInputFilter.h"

#include <cstddef>

namespace lamina {

const char* const kGPUImageFourInputTextureVertexShaderString = R"(
attribute vec4 position;
attribute vec4 inputTextureCoordinate;
attribute vec4 inputTextureCoordinate2;
attribute vec4 inputTextureCoordinate3;
attribute vec4 inputTextureCoordinate4;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
varying vec2 textureCoordinate3;
varying vec2 textureCoordinate4;

void main()
{
    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy;
    textureCoordinate2 = inputTextureCoordinate2.xy;
    textureCoordinate3 = inputTextureCoordinate3.xy;
    textureCoordinate4 = inputTextureCoordinate4.xy;
}
)";

namespace {

constexpr std::size_t kInputs = 4;

} // namespace

GPUImageFourInputFilter::GPUImageFourInputFilter(const std::string& fragmentShader)
    : GPUImageFourInputFilter(kGPUImageFourInputTextureVertexShaderString, fragmentShader)
{
}

GPUImageFourInputFilter::GPUImageFourInputFilter(const std::string& vertexShader, const std::string& fragmentShader)
    : GPUImageThreeInputFilter(vertexShader, fragmentShader, kInputs)
{
}

} // namespace lamina
