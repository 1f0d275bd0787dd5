#pragma once

#include "gpu/core/GPUImageFilter.h"

namespace lamina {

/// Passes a second coordinate on as `textureCoordinate2`.
extern const char* const kGPUImageTwoInputTextureVertexShaderString;

/// A filter that draws when both slots have a frame. One of them may be a still picture that comes once while the other
/// streams: then each frame of the stream draws. The output has the size of slot 0; other inputs are stretched to it.
///
/// The fragment shader gets `inputImageTexture2` and `textureCoordinate2` for slot 1.
class GPUImageTwoInputFilter : public GPUImageFilter {
public:
    explicit GPUImageTwoInputFilter(const std::string& fragmentShader);
    GPUImageTwoInputFilter(const std::string& vertexShader, const std::string& fragmentShader);

    /// The slot is fed once: after that it is not waited for. For good.
    void disableFirstFrameCheck() { m_firstFrameCheckDisabled = true; }
    void disableSecondFrameCheck() { m_secondFrameCheckDisabled = true; }

    void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                     const QuadCoordinates& textureCoordinates) override;
    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    int nextAvailableTextureIndex() const override { return m_hasSetFirstTexture ? 1 : 0; }
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;
    CGSize rotatedSize(CGSize size, int textureIndex) const override;

protected:
    /// For three and more inputs: the attributes after `inputTextureCoordinate2`.
    GPUImageTwoInputFilter(const std::string& vertexShader, const std::string& fragmentShader,
                           std::vector<std::string> moreAttributes);

    void unlockInputs() override;
    /// Binds the inputs after the first and sets their coordinates; returns with their attribute arrays enabled.
    virtual void bindFurtherInputs();
    virtual void disableFurtherArrays();
    /// One further slot: its texture to `unit`, its coordinates by its rotation.
    static void bindSlot(const std::shared_ptr<GPUImageFramebuffer>& input, int unit, GLint uniform, GLuint attribute,
                         GPUImageRotationMode rotation);

    std::shared_ptr<GPUImageFramebuffer> m_secondInputFramebuffer;
    GLuint m_filterSecondTextureCoordinateAttribute = 0;
    GLint m_filterInputTextureUniform2 = -1;
    GPUImageRotationMode m_inputRotation2 = kGPUImageNoRotation;
    CMTime m_firstFrameTime = kCMTimeInvalid;
    CMTime m_secondFrameTime = kCMTimeInvalid;
    bool m_hasSetFirstTexture = false;
    bool m_hasReceivedFirstFrame = false;
    bool m_hasReceivedSecondFrame = false;
    bool m_firstFrameCheckDisabled = false;
    bool m_secondFrameCheckDisabled = false;
};

} // namespace lamina
