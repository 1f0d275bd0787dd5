#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "platform/gl/GLHeaders.h"

#include <span>
#include <string_view>

namespace lamina {

/// The base of blends that the user turns up and down.
class MixtureBlendFilter : public GPUImageTwoInputFilter {
public:
    /// From 0, the base (slot 0), to 1, all that the blend makes of the overlay (slot 1); default 0.5.
    float mix() const { return m_mix; }
    void setMix(float mix);

protected:
    /// `result` as in `blendShader`, which gets the amount as `mixturePercent`, 0 to 1.
    explicit MixtureBlendFilter(std::string_view result);
    static FilterProperty mixProperty();
    /// The amount as it is in force; none where it never was. On the queue.
    std::span<const float> mixInForce() const { return uniformValues(m_mixUniform); }

private:
    GLint m_mixUniform;
    float m_mix = 0;
};

} // namespace lamina
