#pragma once

#include "gpu/core/GPUImageThreeInputFilter.h"

namespace lamina {

/// Passes coordinates on as `textureCoordinate2` to `textureCoordinate4`.
extern const char* const kGPUImageFourInputTextureVertexShaderString;

/// As `GPUImageThreeInputFilter` with a fourth slot: `inputImageTexture4`, `textureCoordinate4`.
///
/// When the first three slots have arrived, a frame of slot 3 that comes last is passed over: the fourth has to come before
/// the third, or a stream has to run beside stills.
class GPUImageFourInputFilter : public GPUImageThreeInputFilter {
public:
    explicit GPUImageFourInputFilter(const std::string& fragmentShader);
    GPUImageFourInputFilter(const std::string& vertexShader, const std::string& fragmentShader);

    void disableFourthFrameCheck() { m_fourthFrameCheckDisabled = true; }

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    int nextAvailableTextureIndex() const override;
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;
    CGSize rotatedSize(CGSize size, int textureIndex) const override;

protected:
    void unlockInputs() override;
    void bindFurtherInputs() override;
    void disableFurtherArrays() override;

    std::shared_ptr<GPUImageFramebuffer> m_fourthInputFramebuffer;
    GLuint m_filterFourthTextureCoordinateAttribute = 0;
    GLint m_filterInputTextureUniform4 = -1;
    GPUImageRotationMode m_inputRotation4 = kGPUImageNoRotation;
    CMTime m_fourthFrameTime = kCMTimeInvalid;
    bool m_hasSetThirdTexture = false;
    bool m_hasReceivedFourthFrame = false;
    bool m_fourthFrameCheckDisabled = false;
};

} // namespace lamina
