#include "editors/colorpicker/HSBColor.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

constexpr float kDegreesOfSixth = 60;

/// In sixths of the circle, from -1 on. One of the components must differ from the others.
float hueInSixths(const RGBComponents& color, float largest, float delta)
{
    if (color.red == largest)
        return (color.green - color.blue) / delta;
    if (color.green == largest)
        return (color.blue - color.red) / delta + 2;
    return (color.red - color.green) / delta + 4;
}

} // namespace

int wholeDegrees(float hue)
{
    return static_cast<int>(hue * kHueDegrees);
}

int wholePercent(double share)
{
    return static_cast<int>(share * 100);
}

HSBColor hsbFromRGB(const RGBComponents& color, const HSBColor& present, HSBPreservation preservation)
{
    const float largest = std::max({color.red, color.green, color.blue});
    const float delta = largest - std::min({color.red, color.green, color.blue});
    HSBColor result = preservation == HSBPreservation::Keep ? present : HSBColor();
    result.brightness = largest;
    if (largest == 0)
        return result;
    result.saturation = delta / largest;
    if (result.saturation == 0)
        return result;
    float hue = hueInSixths(color, largest, delta) / 6;
    if (hue < 0)
        hue += 1;
    const bool sameRed = preservation == HSBPreservation::Keep && std::abs(hue - present.hue) == 1;
    if (!sameRed)
        result.hue = hue;
    return result;
}

RGBComponents hueFactors(float degrees)
{
    const float x = degrees / kDegreesOfSixth;
    const float c = 1 - std::abs(std::fmod(x, 2.0F) - 1);
    if (x < 1)
        return {1, c, 0};
    if (x < 2)
        return {c, 1, 0};
    if (x < 3)
        return {0, 1, c};
    if (x < 4)
        return {0, c, 1};
    if (x < 5)
        return {c, 0, 1};
    return {1, 0, c};
}

RGBComponents rgbFromHSB(const HSBColor& color)
{
    const RGBComponents factors = hueFactors(color.hue * kHueDegrees);
    const float p = color.brightness * color.saturation;
    const float q = color.brightness - p;
    return {std::fma(factors.red, p, q), std::fma(factors.green, p, q), std::fma(factors.blue, p, q)};
}

UIColor colorFromHSB(const HSBColor& color)
{
    const RGBComponents components = rgbFromHSB(color);
    return {components.red, components.green, components.blue, 1};
}

} // namespace lamina
