#pragma once

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GLProgram.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "platform/gl/GLHeaders.h"

#include <cstddef>
#include <memory>
#include <string>

namespace lamina {

/// Draws twice: the input through the first pair of shaders, what came out through the second. The input's rotation
/// acts in the first pass; the second clears to opaque black whatever the background colour. Only the second output is
/// kept and handed on; the first, of the size of pass 0, goes back to the pool at once, so a chain of passes holds two
/// framebuffers of a size.
class GPUImageTwoPassFilter : public GPUImageFilter {
public:
    GPUImageTwoPassFilter(const std::string& firstStageVertexShader, const std::string& firstStageFragmentShader,
                          const std::string& secondStageVertexShader, const std::string& secondStageFragmentShader);
    GPUImageTwoPassFilter(const std::string& firstStageFragmentShader, const std::string& secondStageFragmentShader);

    std::shared_ptr<GPUImageFramebuffer> framebufferForOutput() const override { return m_secondOutputFramebuffer; }
    void removeOutputFramebuffer() override { m_secondOutputFramebuffer.reset(); }
    void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                     const QuadCoordinates& textureCoordinates) override;
    /// 0: the first program's values, any other index: the second's.
    void setUniformsForProgramAtIndex(int programIndex) override;

    bool canRender() const override { return GPUImageFilter::canRender() && m_secondFilterProgram != nullptr; }

protected:
    bool readsTexelCentres(int programIndex, std::size_t slot) const override;
    const std::shared_ptr<UniformState>& uniformStateFor(const std::shared_ptr<GLProgram>& program) const override;
    /// As `uniformIndex` for the second program.
    GLint secondUniformIndex(const char* name) const;
    /// The pass of `m_secondFilterProgram`.
    Pass secondPass();
    /// Replaces the second program by that of other shaders. On the queue.
    void buildSecondProgram(const std::string& vertexShader, const std::string& fragmentShader);
    /// Whose output the second pass draws into.
    enum class Kept {
        Between, ///< nobody's: the filter draws on from it
        Output,  ///< the filter's, which a capture may have asked for
    };
    /// Draws the input through both programs and gives its count back. The result has the count of its fetch. On the
    /// queue.
    std::shared_ptr<GPUImageFramebuffer> drawBothPasses(const QuadCoordinates& vertices,
                                                        const QuadCoordinates& textureCoordinates, Kept kept);

    std::shared_ptr<GPUImageFramebuffer> m_secondOutputFramebuffer;
    std::shared_ptr<GLProgram> m_secondFilterProgram;
    GLuint m_secondFilterPositionAttribute = 0;
    GLuint m_secondFilterTextureCoordinateAttribute = 0;
    GLint m_secondFilterInputTextureUniform = -1;
    GLint m_secondFilterInputTextureUniform2 = -1;

private:
    std::shared_ptr<UniformState> m_secondUniformState = std::make_shared<UniformState>();
};

} // namespace lamina
