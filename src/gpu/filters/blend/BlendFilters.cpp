#include "gpu/filters/blend/BlendFilters.h"

#include "platform/image/pixels/AlphaForm.h"

namespace lamina::blends {

namespace {

constexpr AlphaForm kStraight = AlphaForm::Straight;
constexpr AlphaForm kPremultiplied = AlphaForm::Premultiplied;

constexpr const char* kMultiplyOrScreen = R"(
vec4 multipliedOrScreened(vec4 base, vec4 overlay, vec3 screens)
{
    vec3 multiplied = 2.0 * overlay.rgb * base.rgb;
    vec3 screened = overlay.a * base.a - 2.0 * (base.a - base.rgb) * (overlay.a - overlay.rgb);
    return joined(base, overlay, mix(multiplied, screened, screens));
}
)";

constexpr const char* kSoftLightFunction = R"(
vec4 softLight(vec4 base, vec4 overlay)
{
    vec4 tone = base / (base.a + step(base.a, 0.0));
    return base * (overlay.a * tone + 2.0 * overlay * (1.0 - tone)) + overlay * (1.0 - base.a) +
           base * (1.0 - overlay.a);
}
)";

// Premultiplied colours times the other's alpha are whole numbers of 1 / 255²: half of that is what rounding may do.
constexpr const char* kDodgeFunction = R"(
vec3 dodged(vec4 base, vec4 overlay)
{
    vec3 color = clamp(overlay.rgb / clamp(overlay.a, 0.01, 1.0), 0.0, 0.99);
    vec3 brightened = base.rgb * overlay.a / (1.0 - color);
    vec3 sum = overlay.rgb * base.a + base.rgb * overlay.a;
    return mix(vec3(overlay.a * base.a), brightened, step(sum, vec3(overlay.a * base.a + 0.0000075)));
}
)";

// The quotient's two cases held against each other by products.
constexpr const char* kDivideFunction = R"(
vec3 divided(vec4 base, vec4 overlay)
{
    vec3 quotient = base.rgb * overlay.a * overlay.a / max(overlay.rgb, kLeast);
    return mix(vec3(overlay.a * base.a), quotient, step(base.rgb * overlay.a, overlay.rgb * base.a));
}
)";

constexpr const char* kNormalFunction = R"(
vec4 over(vec4 base, vec4 overlay)
{
    float alpha = unionAlpha(base, overlay);
    vec3 sum = overlay.rgb * overlay.a + base.rgb * base.a * (1.0 - overlay.a);
    return vec4(sum / (alpha + step(alpha, 0.0)), alpha);
}
)";

// Colours stay multiplied, by both alphas: white is then their product. Which of the two alphas a colour has does not
// matter to withSaturation(), where only its proportions count.
constexpr const char* kNonSeparable = R"(
float luminance(vec3 color)
{
    return dot(color, vec3(0.3, 0.59, 0.11));
}

float least(vec3 color)
{
    return min(min(color.r, color.g), color.b);
}

float most(vec3 color)
{
    return max(max(color.r, color.g), color.b);
}

float saturation(vec3 color)
{
    return most(color) - least(color);
}

vec3 withSaturation(vec3 color, float wanted)
{
    return (color - least(color)) * (wanted / max(saturation(color), kLeast));
}

vec4 withLuminance(vec4 base, vec4 overlay, vec3 color, float wanted)
{
    vec3 moved = color + (wanted - luminance(color));
    float white = overlay.a * base.a;
    float above = wanted / max(wanted - least(moved), kLeast);
    float below = (white - wanted) / max(most(moved) - wanted, kLeast);
    return joined(base, overlay, wanted + (moved - wanted) * clamp(min(above, below), 0.0, 1.0));
}
)";

} // namespace

const BlendFormula kAdd{
    "GPUImageAddBlendFilter", "Sums the light of both", kPremultiplied,
    "joined(base, overlay, min(overlay.rgb * base.a + base.rgb * overlay.a, vec3(overlay.a * base.a)))"};
const BlendFormula kMultiply{"GPUImageMultiplyBlendFilter",
                             "Darkens the base by the overlay, as two slides in one projector", kPremultiplied,
                             "overlay * base + overlay * (1.0 - base.a) + base * (1.0 - overlay.a)"};
const BlendFormula kScreen{"GPUImageScreenBlendFilter",
                           "Lightens the base by the overlay, as two projectors on one screen", kPremultiplied,
                           "1.0 - (1.0 - overlay) * (1.0 - base)"};
const BlendFormula kOverlay{"GPUImageOverlayBlendFilter",
                            "Multiplies where the base is dark, screens where it is light", kPremultiplied,
                            "multipliedOrScreened(base, overlay, step(base.a, 2.0 * base.rgb))", kMultiplyOrScreen};
const BlendFormula kHardLight{
    "GPUImageHardLightBlendFilter", "Multiplies where the overlay is dark, screens where it is light", kPremultiplied,
    "multipliedOrScreened(base, overlay, step(overlay.a, 2.0 * overlay.rgb))", kMultiplyOrScreen};
const BlendFormula kSoftLight{"GPUImageSoftLightBlendFilter",
                              "Darkens and lightens the base gently, short of black and white", kPremultiplied,
                              "softLight(base, overlay)", kSoftLightFunction};
const BlendFormula kDarken{"GPUImageDarkenBlendFilter", "Keeps the darker of the two, channel by channel",
                           kPremultiplied,
                           "vec4(min(overlay.rgb * base.a, base.rgb * overlay.a) + alone(base, overlay), 1.0)"};
const BlendFormula kLighten{"GPUImageLightenBlendFilter",
                            "Keeps the lighter of the two, channel by channel; for opaque overlays", kStraight,
                            "max(base, overlay)"};
const BlendFormula kColorBurn{"GPUImageColorBurnBlendFilter",
                              "Darkens and saturates the base where the overlay is dark; for opaque overlays",
                              kStraight, "1.0 - (1.0 - base) / max(overlay, kLeast)"};
const BlendFormula kColorDodge{"GPUImageColorDodgeBlendFilter", "Brightens the base where the overlay is light",
                               kPremultiplied, "vec4(dodged(base, overlay) + alone(base, overlay), 1.0)",
                               kDodgeFunction};
const BlendFormula kLinearBurn{"GPUImageLinearBurnBlendFilter",
                               "Darkens the base by what the overlay lacks to white; for opaque overlays", kStraight,
                               "vec4(clamp(base.rgb + overlay.rgb - 1.0, 0.0, 1.0), base.a)"};
const BlendFormula kDifference{"GPUImageDifferenceBlendFilter", "Shows how far the two are apart; for opaque overlays",
                               kStraight, "vec4(abs(overlay.rgb - base.rgb), base.a)"};
const BlendFormula kSubtract{"GPUImageSubtractBlendFilter",
                             "Takes the overlay's light away from the base; for opaque overlays", kStraight,
                             "vec4(base.rgb - overlay.rgb, base.a)"};
const BlendFormula kDivide{"GPUImageDivideBlendFilter", "Lightens the base by dividing it by the overlay",
                           kPremultiplied, "joined(base, overlay, divided(base, overlay))", kDivideFunction};
const BlendFormula kExclusion{"GPUImageExclusionBlendFilter", "As the difference, with softer contrasts",
                              kPremultiplied,
                              "vec4(overlay.rgb * base.a + base.rgb * overlay.a - 2.0 * overlay.rgb * base.rgb + "
                              "alone(base, overlay), base.a)"};
const BlendFormula kHue{"GPUImageHueBlendFilter", "Gives the base the overlay's hue", kPremultiplied,
                        "withLuminance(base, overlay, withSaturation(overlay.rgb, saturation(base.rgb) * overlay.a), "
                        "luminance(base.rgb) * overlay.a)",
                        kNonSeparable};
const BlendFormula kSaturation{"GPUImageSaturationBlendFilter", "Gives the base the overlay's saturation",
                               kPremultiplied,
                               "withLuminance(base, overlay, withSaturation(base.rgb, saturation(overlay.rgb) * "
                               "base.a), luminance(base.rgb) * overlay.a)",
                               kNonSeparable};
const BlendFormula kColor{"GPUImageColorBlendFilter", "Gives the base the overlay's hue and saturation", kPremultiplied,
                          "withLuminance(base, overlay, overlay.rgb * base.a, luminance(base.rgb) * overlay.a)",
                          kNonSeparable};
const BlendFormula kLuminosity{
    "GPUImageLuminosityBlendFilter", "Gives the base the overlay's lights and shadows", kPremultiplied,
    "withLuminance(base, overlay, base.rgb * overlay.a, luminance(overlay.rgb) * base.a)", kNonSeparable};
const BlendFormula kNormal{"GPUImageNormalBlendFilter", "Lays the overlay over the base, by the alphas of both",
                           kStraight, "over(base, overlay)", kNormalFunction};
const BlendFormula kSourceOver{"GPUImageSourceOverBlendFilter",
                               "Fades from the base to the overlay by the overlay's alpha", kStraight,
                               "over(base, texture2D(inputImageTexture2, textureCoordinate))", R"(
vec4 over(vec4 base, vec4 overlay)
{
    return mix(base, overlay, overlay.a);
}
)"};
const BlendFormula kMask{"GPUImageMaskFilter",
                         "Cuts the base out: shown where the overlay is white, hidden where black", kStraight,
                         "vec4(base.rgb, dot(overlay.rgb, vec3(0.33333334)) * overlay.a)"};

} // namespace lamina::blends
