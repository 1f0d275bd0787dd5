#include "gpu/core/TexelSampling.h"

#include "gpu/core/VideoProcessingQueue.h"

namespace lamina {

const char* const kGPUImageTexelStepVertexShaderString = R"(attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform float texelWidth;
uniform float texelHeight;

varying vec2 textureCoordinate;
varying vec2 texelStep;

void main()
{
    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy;
    texelStep = vec2(texelWidth, texelHeight);
}
)";

TexelSize::TexelSize(GPUImageFilter& filter, std::shared_ptr<GLProgram> program)
    : m_filter(filter)
    , m_program(std::move(program))
{
    if (!m_program)
        return;
    runSynchronouslyOnVideoProcessingQueue([this] {
        m_widthUniform = m_program->uniformIndex("texelWidth");
        m_heightUniform = m_program->uniformIndex("texelHeight");
    });
    // The program may be shared: where only one of the two is set later, the other must not be what somebody else left
    // there.
    m_filter.setFloat(0, m_widthUniform, m_program);
    m_filter.setFloat(0, m_heightUniform, m_program);
}

float TexelSize::width() const
{
    return valueFromVideoProcessingQueue([this] { return m_width; });
}

float TexelSize::height() const
{
    return valueFromVideoProcessingQueue([this] { return m_height; });
}

void TexelSize::setShare(float& side, GLint uniform, float share)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_isOverridden = true;
        side = share;
        m_filter.setFloat(share, uniform, m_program);
    });
}

void TexelSize::setWidth(float share)
{
    setShare(m_width, m_widthUniform, share);
}

void TexelSize::setHeight(float share)
{
    setShare(m_height, m_heightUniform, share);
}

void TexelSize::setupForSize(CGSize size, bool turned)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        // There is no size while there is no source.
        if (m_isOverridden || size.width <= 0 || size.height <= 0)
            return;
        m_width = static_cast<float>(1.0 / size.width);
        m_height = static_cast<float>(1.0 / size.height);
        // The size is that of the output; in a picture that lies turned, its width runs along the texture's columns.
        // The values are kept for the draw: another filter of the same program may be set up in between.
        m_filter.setFloat(turned ? m_height : m_width, m_widthUniform, m_program);
        m_filter.setFloat(turned ? m_width : m_height, m_heightUniform, m_program);
    });
}

} // namespace lamina
