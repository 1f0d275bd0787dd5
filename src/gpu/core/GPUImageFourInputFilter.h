#pragma once

#include "gpu/core/GPUImageThreeInputFilter.h"

#include <string>

namespace lamina {

/// Passes coordinates on as `textureCoordinate2` to `textureCoordinate4`.
extern const char* const kGPUImageFourInputTextureVertexShaderString;

/// As `GPUImageThreeInputFilter` with a fourth slot: `inputImageTexture4`, `textureCoordinate4`.
///
/// When the first three slots have arrived, a frame of slot 3 that comes last is passed over: the fourth has to come
/// before the third, or a stream has to run beside stills.
class GPUImageFourInputFilter : public GPUImageThreeInputFilter {
public:
    explicit GPUImageFourInputFilter(const std::string& fragmentShader);
    GPUImageFourInputFilter(const std::string& vertexShader, const std::string& fragmentShader);

    /// As `disableFirstFrameCheck` for slot 3.
    void disableFourthFrameCheck() { disableFrameCheck(3); }
};

} // namespace lamina
