#pragma once

#include "gpu/core/GPUImageTwoInputFilter.h"

#include <cstddef>
#include <string>

namespace lamina {

/// Passes coordinates on as `textureCoordinate2` and `textureCoordinate3`.
extern const char* const kGPUImageThreeInputTextureVertexShaderString;

/// As `GPUImageTwoInputFilter` with a third slot: `inputImageTexture3`, `textureCoordinate3`.
class GPUImageThreeInputFilter : public GPUImageTwoInputFilter {
public:
    explicit GPUImageThreeInputFilter(const std::string& fragmentShader);
    GPUImageThreeInputFilter(const std::string& vertexShader, const std::string& fragmentShader);

    /// As `disableFirstFrameCheck` for slot 2.
    void disableThirdFrameCheck() { disableFrameCheck(2); }

protected:
    GPUImageThreeInputFilter(const std::string& vertexShader, const std::string& fragmentShader, std::size_t inputs);
};

} // namespace lamina
