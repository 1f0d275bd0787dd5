#include "gpu/core/GPUImageThreeInputFilter.h"

namespace lamina {

const char* const kGPUImageThreeInputTextureVertexShaderString = R"(
attribute vec4 position;
attribute vec4 inputTextureCoordinate;
attribute vec4 inputTextureCoordinate2;
attribute vec4 inputTextureCoordinate3;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
varying vec2 textureCoordinate3;

void main()
{
    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy;
    textureCoordinate2 = inputTextureCoordinate2.xy;
    textureCoordinate3 = inputTextureCoordinate3.xy;
}
)";

namespace {

constexpr std::size_t kInputs = 3;

} // namespace

GPUImageThreeInputFilter::GPUImageThreeInputFilter(const std::string& fragmentShader)
    : GPUImageThreeInputFilter(kGPUImageThreeInputTextureVertexShaderString, fragmentShader)
{
}

GPUImageThreeInputFilter::GPUImageThreeInputFilter(const std::string& vertexShader, const std::string& fragmentShader)
    : GPUImageTwoInputFilter(vertexShader, fragmentShader, kInputs)
{
}

GPUImageThreeInputFilter::GPUImageThreeInputFilter(const std::string& vertexShader, const std::string& fragmentShader,
                                                   std::size_t inputs)
    : GPUImageTwoInputFilter(vertexShader, fragmentShader, inputs)
{
}

} // namespace lamina
