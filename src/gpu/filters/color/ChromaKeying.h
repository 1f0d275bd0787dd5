#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUVectors.h"
#include "platform/gl/GLHeaders.h"

#include <string>
#include <vector>

namespace lamina {

/// Shader text for filters that take a backdrop's colour out, with the uniforms that `ChromaKeying` sets:
///
///   float keptShare(vec3 color)    0 for the colour to replace, 1 for colours unlike it
///
///   Y = 0.2989 r + 0.5866 g + 0.1145 b,   Cr = 0.7132 (r - Y),   Cb = 0.5647 (b - Y)
///   d = distance of (Cr, Cb) to that of the colour to replace
///   x = clamp((d - threshold) / smoothing, 0, 1),   share = x x (3 - 2 x)
///
/// Lighter by an even grey is the same colour to it; half as bright is half as far from grey. With smoothing 0 or less
/// the share is 0 up to the threshold and 1 beyond.
extern const char* const kChromaKeyFunctions;

/// What such filters have to be set, over `Base`: their kind of filter.
template <class Base>
class ChromaKeying : public Base {
public:
    /// Distance of colour below which all is replaced, 0 to about 0.9; default 0.4.
    float thresholdSensitivity() const { return m_thresholdSensitivity; }
    void setThresholdSensitivity(float threshold)
    {
        m_thresholdSensitivity = threshold;
        this->setFloat(threshold, m_thresholdUniform, this->m_filterProgram);
    }

    /// Width of the way from replaced to kept, in the same measure; default 0.1.
    float smoothing() const { return m_smoothing; }
    void setSmoothing(float smoothing)
    {
        m_smoothing = smoothing;
        this->setFloat(smoothing, m_smoothingUniform, this->m_filterProgram);
    }

    /// The colour to replace, components 0 to 1, as stored; default green (0, 1, 0).
    const GPUVector3& colorToReplace() const { return m_colorToReplace; }
    void setColorToReplace(const GPUVector3& color)
    {
        m_colorToReplace = color;
        this->setVec3(color, m_colorUniform, this->m_filterProgram);
    }
    void setColorToReplaceRed(float red, float green, float blue) { setColorToReplace({red, green, blue}); }

protected:
    /// `fragmentShader`: with `kChromaKeyFunctions` in it.
    explicit ChromaKeying(const std::string& fragmentShader)
        : Base(fragmentShader)
        , m_thresholdUniform(this->uniformIndex("thresholdSensitivity"))
        , m_smoothingUniform(this->uniformIndex("smoothing"))
        , m_colorUniform(this->uniformIndex("colorToReplace"))
    {
        setThresholdSensitivity(kThreshold);
        setSmoothing(kSmoothing);
        setColorToReplace(kGreen);
    }

    static std::vector<FilterProperty> keyingProperties()
    {
        return {
            filterProperty("thresholdSensitivity", &ChromaKeying::setThresholdSensitivity, kThreshold, {0, 1}, "",
                           "Distance of colour below which all is replaced"),
            filterProperty("smoothing", &ChromaKeying::setSmoothing, kSmoothing, {0, 1}, "",
                           "Width of the way from replaced to kept; 0 for a hard edge"),
            filterProperty("colorToReplace", &ChromaKeying::setColorToReplace, kGreen, {0, 1}, "",
                           "The backdrop's colour, compared without its luma"),
        };
    }
    /// "setColorToReplaceRed:green:blue:".
    static std::vector<FilterSelector> keyingSelectors()
    {
        return {filterOperation("setColorToReplaceRed:green:blue:", &ChromaKeying::setColorToReplaceRed,
                                "The backdrop's colour", kGreen.one, kGreen.two, kGreen.three)};
    }

private:
    static constexpr float kThreshold = 0.4F;
    static constexpr float kSmoothing = 0.1F;
    static constexpr GPUVector3 kGreen{0, 1, 0};

    GLint m_thresholdUniform;
    GLint m_smoothingUniform;
    GLint m_colorUniform;
    float m_thresholdSensitivity = 0;
    float m_smoothing = 0;
    GPUVector3 m_colorToReplace;
};

} // namespace lamina
