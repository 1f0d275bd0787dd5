#pragma once

#include "gpu/core/GPUImageFilter.h"
#include "platform/gl/GLHeaders.h"

#include <cstddef>
#include <string>

namespace lamina {

/// The base of filters that read neighbours, whole pixels away, in one pass: the step from one pixel to the next is set
/// before each draw, as two numbers in texture coordinates. Across and down are those of the picture as its texture
/// holds it.
class PixelStepFilter : public GPUImageFilter {
public:
    void setUniformsForProgramAtIndex(int programIndex) override;

protected:
    /// `widthName` and `heightName`: the uniforms of the step.
    PixelStepFilter(const std::string& vertexShader, const std::string& fragmentShader, const char* widthName,
                    const char* heightName);
    bool readsTexelCentres(int, std::size_t) const override { return true; }
    /// With other shaders that have the same uniforms. Waits for the queue.
    void switchToShaders(const std::string& vertexShader, const std::string& fragmentShader);

private:
    void readUniforms();

    const char* m_widthName;
    const char* m_heightName;
    GLint m_widthUniform = -1;
    GLint m_heightUniform = -1;
};

} // namespace lamina
