#include "gpu/endpoints/FrameReadback.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GLErrors.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/base/Causes.h"

#include <cstddef>
#include <string>

namespace lamina {

namespace {

constexpr int kTextureUnit = 4;
constexpr const char* kSubject = "OpenGL ES";

bool isComplete()
{
    return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

} // namespace

FrameReadback::FrameReadback(GPUImageContext& context, IntSize videoSize)
    : m_movieWriterContext(context)
    , m_videoSize(videoSize)
{
    m_colorSwizzlingProgram =
        linkedProgram(context, kGPUImageVertexShaderString, kGPUImageColorSwizzlingFragmentShaderString,
                      {"position", "inputTextureCoordinate"});
    if (!m_colorSwizzlingProgram)
        return;
    m_colorSwizzlingPositionAttribute = m_colorSwizzlingProgram->attributeIndex("position");
    m_colorSwizzlingTextureCoordinateAttribute = m_colorSwizzlingProgram->attributeIndex("inputTextureCoordinate");
    m_colorSwizzlingInputTextureUniform = m_colorSwizzlingProgram->uniformIndex("inputImageTexture");
    // This context draws nothing else: they stay enabled.
    glEnableVertexAttribArray(m_colorSwizzlingPositionAttribute);
    glEnableVertexAttribArray(m_colorSwizzlingTextureCoordinateAttribute);
}

FrameReadback::~FrameReadback()
{
    if (m_movieWriterContext.useAsCurrentContext())
        destroyDataFBO();
}

Outcome FrameReadback::availability() const
{
    if (!m_movieWriterContext.useAsCurrentContext())
        return Error{kSubject, "there is no context for frames of a movie"};
    if (!m_colorSwizzlingProgram)
        return Error{kSubject, "the program that draws frames of a movie can't be built"};
    return success();
}

Result<std::shared_ptr<CVPixelBuffer>> FrameReadback::read(const Frame& frame)
{
    if (const Outcome available = availability(); !available)
        return available.error();
    forgetGLErrors();
    std::shared_ptr<CVPixelBuffer> pixels;
    const bool liesAsWanted = frame.size == m_videoSize && frame.rotation == kGPUImageNoRotation;
    if (liesAsWanted && attachTexture(frame.texture))
        pixels = readPixels(CVPixelFormat::RGBA);
    else if (renderAtInternalSizeUsingFramebuffer(frame))
        pixels = readPixels(CVPixelFormat::BGRA);
    else
        return Error{kSubject, "the device has no framebuffer for " + std::to_string(m_videoSize.width) + " x " +
                                   std::to_string(m_videoSize.height) + " pixels"};
    if (m_textureFramebuffer != 0)
        attachTexture(0); // its memory would else last until the next frame, whoever deletes it
    if (!pixels)
        return Error{kSubject, cause::kNoMemory};
    if (glGetError() != GL_NO_ERROR)
        return Error{kSubject, "the device gave no pixels for a frame of a movie"};
    return pixels;
}

/// Of the bound framebuffer. Null: memory is short.
std::shared_ptr<CVPixelBuffer> FrameReadback::readPixels(CVPixelFormat format) const
{
    std::shared_ptr<CVPixelBuffer> pixels = CVPixelBuffer::make(m_videoSize, format);
    if (pixels)
        glReadPixels(0, 0, m_videoSize.width, m_videoSize.height, GL_RGBA, GL_UNSIGNED_BYTE,
                     pixels->planes().front().bytes);
    return pixels;
}

/// Binds a framebuffer around the texture. False where textures of its form can't be read.
bool FrameReadback::attachTexture(GLuint texture)
{
    if (m_textureFramebuffer == 0)
        glGenFramebuffers(1, &m_textureFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_textureFramebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    return texture != 0 && isComplete();
}

bool FrameReadback::createDataFBO()
{
    glGenFramebuffers(1, &m_movieFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_movieFramebuffer);
    glGenRenderbuffers(1, &m_movieRenderbuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, m_movieRenderbuffer);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8_OES, m_videoSize.width, m_videoSize.height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_movieRenderbuffer);
    return isComplete();
}

void FrameReadback::destroyDataFBO()
{
    for (GLuint* framebuffer : {&m_movieFramebuffer, &m_textureFramebuffer}) {
        glDeleteFramebuffers(1, framebuffer);
        *framebuffer = 0;
    }
    glDeleteRenderbuffers(1, &m_movieRenderbuffer);
    m_movieRenderbuffer = 0;
}

bool FrameReadback::setFilterFBO()
{
    if (m_movieFramebuffer == 0 && !createDataFBO()) {
        destroyDataFBO();
        return false;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, m_movieFramebuffer);
    glViewport(0, 0, m_videoSize.width, m_videoSize.height);
    return true;
}

bool FrameReadback::renderAtInternalSizeUsingFramebuffer(const Frame& frame)
{
    if (!setFilterFBO())
        return false;
    m_movieWriterContext.setContextShaderProgram(m_colorSwizzlingProgram);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glActiveTexture(GL_TEXTURE0 + kTextureUnit);
    glBindTexture(GL_TEXTURE_2D, frame.texture);
    glUniform1i(m_colorSwizzlingInputTextureUniform, kTextureUnit);
    glVertexAttribPointer(m_colorSwizzlingPositionAttribute, 2, GL_FLOAT, GL_FALSE, 0, kGPUImageQuadVertices.data());
    glVertexAttribPointer(m_colorSwizzlingTextureCoordinateAttribute, 2, GL_FLOAT, GL_FALSE, 0,
                          GPUImageFilter::textureCoordinatesForRotation(frame.rotation).data());
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glBindTexture(GL_TEXTURE_2D, 0); // as above, for its memory
    return true;
}

} // namespace lamina
