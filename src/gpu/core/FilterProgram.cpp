#include "gpu/core/FilterProgram.h"

#include "gpu/core/GPUImageContext.h"
#include "platform/base/Log.h"

#include <fstream>
#include <iterator>
#include <utility>

namespace lamina {

const char* const kGPUImageVertexShaderString = R"(
attribute vec4 position;
attribute vec4 inputTextureCoordinate;

varying vec2 textureCoordinate;

void main()
{
    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy;
}
)";

const char* const kGPUImagePassthroughFragmentShaderString = R"(
varying highp vec2 textureCoordinate;

uniform sampler2D inputImageTexture;

void main()
{
    gl_FragColor = texture2D(inputImageTexture, textureCoordinate);
}
)";

const char* const kGPUImageColorSwizzlingFragmentShaderString = R"(
varying highp vec2 textureCoordinate;

uniform sampler2D inputImageTexture;

void main()
{
    gl_FragColor = texture2D(inputImageTexture, textureCoordinate).bgra;
}
)";

const QuadCoordinates kGPUImageQuadVertices{-1, -1, 1, -1, -1, 1, 1, 1};

std::shared_ptr<GLProgram> linkedProgram(GPUImageContext& context, const std::string& vertexShader,
                                         const std::string& fragmentShader, const std::vector<std::string>& attributes)
{
    if (!context.useAsCurrentContext())
        return nullptr;
    std::shared_ptr<GLProgram> program = context.programForVertexShaderString(vertexShader, fragmentShader);
    if (program->initialized())
        return program;
    for (const std::string& attribute : attributes)
        program->addAttribute(attribute);
    if (program->link())
        return program;
    logError("Program link log: " + program->programLog());
    logError("Fragment shader compile log: " + program->fragmentShaderLog());
    logError("Vertex shader compile log: " + program->vertexShaderLog());
    return nullptr;
}

std::shared_ptr<GLProgram> linkedProgram(const std::string& vertexShader, const std::string& fragmentShader,
                                         const std::vector<std::string>& attributes)
{
    return linkedProgram(GPUImageContext::sharedImageProcessingContext(), vertexShader, fragmentShader, attributes);
}

std::string shaderTextFromFile(const std::string& name, const char* extension)
{
    const std::string path = name + "." + extension;
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!file.good() && !file.eof())
        text.clear();
    if (text.empty())
        logError(path + ": no shader can be read there");
    return text;
}

void UniformState::setAndExecute(GLint uniform, Block block, std::vector<float> values)
{
    Kept& kept = m_blocks[uniform];
    kept = {std::move(block), std::move(values)};
    kept.block();
}

std::span<const float> UniformState::values(GLint uniform) const
{
    const auto kept = m_blocks.find(uniform);
    return kept == m_blocks.end() ? std::span<const float>() : std::span<const float>(kept->second.values);
}

void UniformState::restore() const
{
    for (const auto& [uniform, kept] : m_blocks)
        kept.block();
}

} // namespace lamina
