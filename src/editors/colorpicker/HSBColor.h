#pragma once

#include "platform/base/UIColor.h"

namespace lamina {

/// A colour by hue, saturation and brightness, each in [0, 1], in single precision. Hues 0 and 1 are the same red.
/// Plain values, usable from any thread.
struct HSBColor {
    float hue = 0;
    float saturation = 0;
    float brightness = 0;
    friend constexpr bool operator==(const HSBColor&, const HSBColor&) = default;
};

/// Red, green and blue in [0, 1], in single precision.
struct RGBComponents {
    float red = 0;
    float green = 0;
    float blue = 0;
    friend constexpr bool operator==(const RGBComponents&, const RGBComponents&) = default;
};

constexpr int kHueDegrees = 360; ///< a whole circle

/// A hue of [0, 1] in degrees, as it is shown and spoken: what is no whole one is cut off.
int wholeDegrees(float hue);

/// A saturation or brightness of [0, 1] in percent, cut off likewise.
int wholePercent(double share);

/// What becomes of values that a colour says nothing of: the hue of a grey, hue and saturation of black.
enum class HSBPreservation {
    None, ///< they are 0
    Keep, ///< they stay what they were, and so does a hue of 0 or 1 where the other one of the two would come
};

/// The colour by hue, saturation and brightness (the hexcone model). `present` is what values are kept from.
HSBColor hsbFromRGB(const RGBComponents& color, const HSBColor& present, HSBPreservation preservation);

/// The pure colour of a hue in degrees, 0 to 360: one component is 1 and one is 0.
RGBComponents hueFactors(float degrees);

/// The inverse of hsbFromRGB. The hue is in [0, 1]; each component is one fused multiply-add.
RGBComponents rgbFromHSB(const HSBColor& color);

/// The same as an opaque colour.
UIColor colorFromHSB(const HSBColor& color);

} // namespace lamina
