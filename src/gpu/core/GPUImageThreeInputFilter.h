#pragma once

#include "gpu/core/GPUImageTwoInputFilter.h"

namespace lamina {

/// Passes coordinates on as `textureCoordinate2` and `textureCoordinate3`.
extern const char* const kGPUImageThreeInputTextureVertexShaderString;

/// As `GPUImageTwoInputFilter` with a third slot: `inputImageTexture3`, `textureCoordinate3`. The time passed on is that of
/// the frame that completed the set.
class GPUImageThreeInputFilter : public GPUImageTwoInputFilter {
public:
    explicit GPUImageThreeInputFilter(const std::string& fragmentShader);
    GPUImageThreeInputFilter(const std::string& vertexShader, const std::string& fragmentShader);

    void disableThirdFrameCheck() { m_thirdFrameCheckDisabled = true; }

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    int nextAvailableTextureIndex() const override;
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;
    CGSize rotatedSize(CGSize size, int textureIndex) const override;

protected:
    GPUImageThreeInputFilter(const std::string& vertexShader, const std::string& fragmentShader,
                             std::vector<std::string> moreAttributes);

    void unlockInputs() override;
    void bindFurtherInputs() override;
    void disableFurtherArrays() override;

    std::shared_ptr<GPUImageFramebuffer> m_thirdInputFramebuffer;
    GLuint m_filterThirdTextureCoordinateAttribute = 0;
    GLint m_filterInputTextureUniform3 = -1;
    GPUImageRotationMode m_inputRotation3 = kGPUImageNoRotation;
    CMTime m_thirdFrameTime = kCMTimeInvalid;
    bool m_hasSetSecondTexture = false;
    bool m_hasReceivedThirdFrame = false;
    bool m_thirdFrameCheckDisabled = false;
};

} // namespace lamina
