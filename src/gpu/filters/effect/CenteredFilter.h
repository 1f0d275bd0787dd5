#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "platform/base/CGGeometry.h"

#include <string>

namespace lamina {

/// The base of filters that do something around a point. Their fragment shaders find it as the uniform `vec2 center`,
/// at its place in the input's texture: where the input lies turned, the point turns with it.
class CenteredFilter : public GPUImageFilter {
public:
    /// (0.5, 0.5) at first; (0, 0) is the picture's top left corner, (1, 1) its bottom right one. From any thread;
    /// waits for the video processing queue.
    CGPoint center() const;
    void setCenter(CGPoint center);

    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;

protected:
    static constexpr CGPoint kMiddle{0.5, 0.5};

    explicit CenteredFilter(const std::string& fragmentShader);

    /// `center` for descriptions, by the name that the filter has for it.
    static FilterProperty centerProperty(std::string name = "center");

private:
    void tellCenter();

    GLint m_centerUniform;
    CGPoint m_center = kMiddle; ///< belongs to the queue, as the rotation
};

} // namespace lamina
