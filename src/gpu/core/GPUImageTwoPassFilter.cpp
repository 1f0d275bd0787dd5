#include "gpu/core/GPUImageTwoPassFilter.h"

#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/core/VideoProcessingQueue.h"

namespace lamina {

namespace {

constexpr GPUVector4 kOpaqueBlack{0, 0, 0, 1};

} // namespace

GPUImageTwoPassFilter::GPUImageTwoPassFilter(const std::string& firstStageVertexShader,
                                             const std::string& firstStageFragmentShader,
                                             const std::string& secondStageVertexShader,
                                             const std::string& secondStageFragmentShader)
    : GPUImageFilter(firstStageVertexShader, firstStageFragmentShader)
{
    runSynchronouslyOnVideoProcessingQueue(
        [&] { buildSecondProgram(secondStageVertexShader, secondStageFragmentShader); });
}

GPUImageTwoPassFilter::GPUImageTwoPassFilter(const std::string& firstStageFragmentShader,
                                             const std::string& secondStageFragmentShader)
    : GPUImageTwoPassFilter(kGPUImageVertexShaderString, firstStageFragmentShader, kGPUImageVertexShaderString,
                            secondStageFragmentShader)
{
}

GPUImageFilter::Pass GPUImageTwoPassFilter::secondPass()
{
    return {1, m_secondFilterProgram, m_secondFilterPositionAttribute, m_secondFilterTextureCoordinateAttribute,
            m_secondFilterInputTextureUniform};
}

void GPUImageTwoPassFilter::buildSecondProgram(const std::string& vertexShader, const std::string& fragmentShader)
{
    buildProgram(secondPass(), vertexShader, fragmentShader);
    m_secondFilterInputTextureUniform2 = secondUniformIndex("inputImageTexture2");
}

GLint GPUImageTwoPassFilter::secondUniformIndex(const char* name) const
{
    return valueFromVideoProcessingQueue(
        [&] { return m_secondFilterProgram ? m_secondFilterProgram->uniformIndex(name) : -1; });
}

bool GPUImageTwoPassFilter::readsTexelCentres(int programIndex, std::size_t slot) const
{
    return programIndex == 0 ? GPUImageFilter::readsTexelCentres(programIndex, slot)
                             : m_secondFilterProgram->reads(slot) == ShaderReads::InPlace;
}

const std::shared_ptr<UniformState>&
GPUImageTwoPassFilter::uniformStateFor(const std::shared_ptr<GLProgram>& program) const
{
    return program == m_filterProgram ? GPUImageFilter::uniformStateFor(program) : m_secondUniformState;
}

void GPUImageTwoPassFilter::setUniformsForProgramAtIndex(int programIndex)
{
    if (programIndex == 0)
        GPUImageFilter::setUniformsForProgramAtIndex(programIndex);
    else
        m_secondUniformState->restore();
}

void GPUImageTwoPassFilter::renderToTextureWithVertices(const QuadCoordinates& vertices,
                                                        const QuadCoordinates& textureCoordinates)
{
    if (preventRendering() || !canRender()) {
        dropFrame();
        return;
    }
    m_secondOutputFramebuffer = drawBothPasses(vertices, textureCoordinates, Kept::Output);
    signalCapture();
}

std::shared_ptr<GPUImageFramebuffer> GPUImageTwoPassFilter::drawBothPasses(const QuadCoordinates& vertices,
                                                                           const QuadCoordinates& textureCoordinates,
                                                                           Kept kept)
{
    if (std::shared_ptr<GPUImageFramebuffer> made = runKernel(vertices, textureCoordinates)) {
        m_firstInputFramebuffer.reset();
        if (kept == Kept::Output)
            holdForCapture(*made);
        return made;
    }
    const std::shared_ptr<GPUImageFramebuffer> between = beginOutput(m_backgroundColor, sizeOfPass(0));
    drawPass(firstPass(), m_firstInputFramebuffer, vertices, textureCoordinates);
    // The input goes back to the pool before the second framebuffer is fetched, which may then be the very same.
    unlockInputs();
    m_firstInputFramebuffer.reset();
    std::shared_ptr<GPUImageFramebuffer> output = beginOutput(kOpaqueBlack);
    if (kept == Kept::Output)
        holdForCapture(*output);
    drawPass(secondPass(), between, vertices, textureCoordinatesForRotation(kGPUImageNoRotation));
    between->unlock();
    return output;
}

} // namespace lamina
