#include "gpu/endpoints/YUVConversionProgram.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GLErrors.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/TextureUpload.h"
#include "gpu/endpoints/YUVConversion.h"

#include <utility>

namespace lamina {

namespace {

constexpr int kLuminanceUnit = 4;
constexpr int kChrominanceUnit = 5;

/// A texture of the pool with the plane as its content; false where that failed.
bool upload(const CVPixelBuffer::Plane& plane, GLenum format, FramebufferHold& texture)
{
    const GPUTextureOptions options{.internalFormat = format, .format = format};
    texture = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(
        {double(plane.size.width), double(plane.size.height)}, options, true);
    return uploadTexture(
        *texture, {.bytes = plane.bytes, .size = plane.size, .format = format, .bytesPerRow = plane.bytesPerRow});
}

void bind(const FramebufferHold& texture, int unit, GLint uniform)
{
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    texture->bindForReading(TextureReads::Anywhere);
    glUniform1i(uniform, unit);
}

} // namespace

void YUVConversionProgram::setup(bool fullRange)
{
    if (m_program && m_isFullRange == fullRange)
        return;
    m_isFullRange = fullRange;
    m_program = linkedProgram(kGPUImageVertexShaderString,
                              fullRange ? kGPUImageYUVFullRangeConversionForLAFragmentShaderString
                                        : kGPUImageYUVVideoRangeConversionForLAFragmentShaderString,
                              {"position", "inputTextureCoordinate"});
    if (!m_program)
        return;
    m_positionAttribute = m_program->attributeIndex("position");
    m_textureCoordinateAttribute = m_program->attributeIndex("inputTextureCoordinate");
    m_luminanceTextureUniform = m_program->uniformIndex("luminanceTexture");
    m_chrominanceTextureUniform = m_program->uniformIndex("chrominanceTexture");
    m_matrixUniform = m_program->uniformIndex("colorConversionMatrix");
}

bool YUVConversionProgram::uploadPlanes(const CVPixelBuffer& frame)
{
    return frame.planes().size() == 2 && upload(frame.planes()[0], GL_LUMINANCE, m_luminance) &&
           upload(frame.planes()[1], GL_LUMINANCE_ALPHA, m_chrominance);
}

std::shared_ptr<GPUImageFramebuffer> YUVConversionProgram::draw(CGSize size, const GPUMatrix3x3& conversion,
                                                                const GPUTextureOptions& options,
                                                                GPUImageRotationMode rotation)
{
    const FramebufferHold luminance = std::move(m_luminance);
    const FramebufferHold chrominance = std::move(m_chrominance);
    if (!m_program || !luminance || !chrominance || !GPUImageContext::useImageProcessingContext())
        return nullptr;
    auto output = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(size, options, false);
    GPUImageContext::setActiveShaderProgram(m_program);
    output->activateFramebuffer();
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    bind(luminance, kLuminanceUnit, m_luminanceTextureUniform);
    bind(chrominance, kChrominanceUnit, m_chrominanceTextureUniform);
    glUniformMatrix3fv(m_matrixUniform, 1, GL_FALSE, &conversion.one.one);
    glVertexAttribPointer(m_positionAttribute, 2, GL_FLOAT, GL_FALSE, 0, kGPUImageQuadVertices.data());
    glVertexAttribPointer(m_textureCoordinateAttribute, 2, GL_FLOAT, GL_FALSE, 0,
                          GPUImageFilter::textureCoordinatesForRotation(rotation).data());
    glEnableVertexAttribArray(m_positionAttribute);
    glEnableVertexAttribArray(m_textureCoordinateAttribute);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    checkDraw("converting a frame");
    return output;
}

} // namespace lamina
