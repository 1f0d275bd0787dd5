#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Where the skin tone filter leads skin for values above 0.
enum class GPUImageSkinToneUpperColor {
    Green,  ///< by hue, away from pink: takes redness out
    Orange, ///< by saturation: a tan
};

/// Changes the colour of skin and what has its hue, and leaves other hues alone.
///
///   w = max(0, 1 - skinHueThreshold d^2)        d: distance of the hue from skinHue, at most half a turn
///   hue' = hue + w skinToneAdjust maxHueShift                        towards pink or green
///   saturation' = saturation (1 + w skinToneAdjust maxSaturationShift)        towards orange
///
/// Hue, saturation and value are those of A. R. Smith ("Color Gamut Transform Pairs", 1978), of straight values as
/// stored; hues count in turns: red is 0, green 1/3. The weight w is a parabola (Epanechnikov's kernel): it is 1 at the
/// hue of skin, 0.05, and 0 from the distance 1 / sqrt(skinHueThreshold) on, about a sixth of a turn at first. Greys
/// have no hue, and stay. The formula is this library's own. Value and alpha stay; hue and saturation move further the
/// further skinToneAdjust is from its default 0, the picture as it is; saturation stops at 1.
class GPUImageSkinToneFilter : public GPUImageFilter {
public:
    GPUImageSkinToneFilter();
    static FilterDescription describe();

    /// From -1, pink, to 1, the upper colour.
    float skinToneAdjust() const { return m_skinToneAdjust; }
    void setSkinToneAdjust(float adjust);
    /// Hue of the skin, in turns from 0 to 1; default 0.05.
    float skinHue() const { return m_skinHue; }
    void setSkinHue(float hue);
    /// How narrow the range of hues is, per square turn; default 40. Up to 0 every hue takes full part.
    float skinHueThreshold() const { return m_skinHueThreshold; }
    void setSkinHueThreshold(float threshold);
    /// In turns; default 0.25.
    float maxHueShift() const { return m_maxHueShift; }
    void setMaxHueShift(float shift);
    /// As a share of the saturation that is there; default 0.4.
    float maxSaturationShift() const { return m_maxSaturationShift; }
    void setMaxSaturationShift(float shift);
    /// Default: green.
    GPUImageSkinToneUpperColor upperSkinToneColor() const { return m_upperSkinToneColor; }
    void setUpperSkinToneColor(GPUImageSkinToneUpperColor color);

private:
    GLint m_skinToneAdjustUniform;
    GLint m_skinHueUniform;
    GLint m_skinHueThresholdUniform;
    GLint m_maxHueShiftUniform;
    GLint m_maxSaturationShiftUniform;
    GLint m_upperSkinToneColorUniform;
    float m_skinToneAdjust = 0;
    float m_skinHue = 0;
    float m_skinHueThreshold = 0;
    float m_maxHueShift = 0;
    float m_maxSaturationShift = 0;
    GPUImageSkinToneUpperColor m_upperSkinToneColor = GPUImageSkinToneUpperColor::Green;
};

} // namespace lamina
