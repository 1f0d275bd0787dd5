#include "gpu/filters/color/GPUImageSkinToneFilter.h"

#include "gpu/core/TypedValue.h"
#include "gpu/filters/color/ColorShaders.h"

#include <algorithm>

namespace lamina {

namespace {

constexpr ValueKind kUpperColors{ValueType::Choice, "choice", "green|orange", "green or orange", {}};

constexpr const char* kDeclarations = R"(
uniform float skinToneAdjust;
uniform float skinHue;
uniform float skinHueThreshold;
uniform float maxHueShift;
uniform float maxSaturationShift;
uniform float upperSkinToneColor;

float hueOf(vec3 color, float value, float chroma)
{
    float divisor = max(chroma, 0.0001);
    if (color.r == value)
        return fract((color.g - color.b) / (6.0 * divisor));
    if (color.g == value)
        return 1.0 / 3.0 + (color.b - color.r) / (6.0 * divisor);
    return 2.0 / 3.0 + (color.r - color.g) / (6.0 * divisor);
}

vec3 colorOf(float hue, float value, float chroma)
{
    vec3 place = abs(fract(hue + vec3(0.0, 2.0, 1.0) / 3.0) * 6.0 - 3.0);
    return value - chroma + chroma * clamp(place - 1.0, 0.0, 1.0);
}
)";

// Saturation is chroma by value: the shift moves both alike, and needs no division.
constexpr const char* kStatements = R"(
    float value = max(color.r, max(color.g, color.b));
    float chroma = value - min(color.r, min(color.g, color.b));
    float hue = hueOf(color.rgb, value, chroma);
    float away = abs(fract(hue - skinHue + 0.5) - 0.5);
    float shift = skinToneAdjust * clamp(1.0 - skinHueThreshold * away * away, 0.0, 1.0);
    bool byHue = skinToneAdjust < 0.0 || upperSkinToneColor < 0.5;
    float newHue = hue + (byHue ? shift * maxHueShift : 0.0);
    float newChroma = byHue ? chroma : clamp(chroma * (1.0 + shift * maxSaturationShift), 0.0, value);
    gl_FragColor = vec4(colorOf(newHue, value, newChroma), color.a);
)";

} // namespace

GPUImageSkinToneFilter::GPUImageSkinToneFilter()
    : GPUImageFilter(colorShader(kDeclarations, kStatements))
    , m_skinToneAdjustUniform(uniformIndex("skinToneAdjust"))
    , m_skinHueUniform(uniformIndex("skinHue"))
    , m_skinHueThresholdUniform(uniformIndex("skinHueThreshold"))
    , m_maxHueShiftUniform(uniformIndex("maxHueShift"))
    , m_maxSaturationShiftUniform(uniformIndex("maxSaturationShift"))
    , m_upperSkinToneColorUniform(uniformIndex("upperSkinToneColor"))
{
    setSkinToneAdjust(0);
    setSkinHue(0.05F);
    setSkinHueThreshold(40);
    setMaxHueShift(0.25F);
    setMaxSaturationShift(0.4F);
    setUpperSkinToneColor(GPUImageSkinToneUpperColor::Green);
}

FilterDescription GPUImageSkinToneFilter::describe()
{
    using Self = GPUImageSkinToneFilter;
    return filterDescription<Self>(
        "GPUImageSkinToneFilter", "colour", 1, "Makes skin pinker, or greener or more orange, and leaves the rest",
        {filterProperty("skinToneAdjust", &Self::setSkinToneAdjust, 0.0F, {-1, 1}, "",
                        "Below 0 towards pink, above 0 towards the upper colour"),
         filterProperty("skinHue", &Self::setSkinHue, 0.05F, {0, 1}, "turns", "Hue that is taken for skin"),
         filterProperty("skinHueThreshold", &Self::setSkinHueThreshold, 40.0F, {4, 400}, "",
                        "Above 40 fewer hues around it take part, below 40 more"),
         filterProperty("maxHueShift", &Self::setMaxHueShift, 0.25F, {0, 0.5}, "turns",
                        "How far the hue moves at the most"),
         filterProperty("maxSaturationShift", &Self::setMaxSaturationShift, 0.4F, {0, 1}, "",
                        "Share by which the saturation grows at the most, for orange"),
         choiceProperty("upperSkinToneColor", &Self::setUpperSkinToneColor, kUpperColors,
                        GPUImageSkinToneUpperColor::Green, "What skin is led to above 0")});
}

void GPUImageSkinToneFilter::setSkinToneAdjust(float adjust)
{
    m_skinToneAdjust = adjust;
    setFloat(adjust, m_skinToneAdjustUniform, m_filterProgram);
}

void GPUImageSkinToneFilter::setSkinHue(float hue)
{
    m_skinHue = hue;
    setFloat(hue, m_skinHueUniform, m_filterProgram);
}

void GPUImageSkinToneFilter::setSkinHueThreshold(float threshold)
{
    m_skinHueThreshold = threshold;
    setFloat(std::max(threshold, 0.0F), m_skinHueThresholdUniform, m_filterProgram);
}

void GPUImageSkinToneFilter::setMaxHueShift(float shift)
{
    m_maxHueShift = shift;
    setFloat(shift, m_maxHueShiftUniform, m_filterProgram);
}

void GPUImageSkinToneFilter::setMaxSaturationShift(float shift)
{
    m_maxSaturationShift = shift;
    setFloat(shift, m_maxSaturationShiftUniform, m_filterProgram);
}

void GPUImageSkinToneFilter::setUpperSkinToneColor(GPUImageSkinToneUpperColor color)
{
    m_upperSkinToneColor = color;
    setFloat(color == GPUImageSkinToneUpperColor::Green ? 0.0F : 1.0F, m_upperSkinToneColorUniform, m_filterProgram);
}

} // namespace lamina
