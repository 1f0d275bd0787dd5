#pragma once

#include "gpu/filters/blend/BlendFilter.h"

namespace lamina {

// The blends that are a formula and no more, each told on the class. In the formulas b is the base (slot 0) and o the
// overlay (slot 1): colours and alpha as stored, 0 to 1, what comes out cut to that. A sum over vectors goes channel by
// channel. The base gives the size; an overlay of another size is stretched.
//
// Those of "premultiplied colours" take b and o multiplied by their alphas and give such colours, so that a soft edge
// stays soft (`GPUImageStage::alphaForm`). For them
//
//   R = (1 - b.a) o.rgb + (1 - o.a) b.rgb    is what shows where only one of the two is, and
//   U = b.a + o.a - b.a o.a                  the alpha of both together.
//
// The others take colours as they are. Where alpha has no say in such a formula, a clear pixel counts with the colour
// that it has, mostly black.
//
// A division by 0 gives what the formula comes near to as the overlay's channel nears its value: pictures never hold
// what is no number.

/// Rows of the table behind the classes, which alone use them.
namespace blends {
extern const BlendFormula kAdd;
extern const BlendFormula kColor;
extern const BlendFormula kColorBurn;
extern const BlendFormula kColorDodge;
extern const BlendFormula kDarken;
extern const BlendFormula kDifference;
extern const BlendFormula kDivide;
extern const BlendFormula kExclusion;
extern const BlendFormula kHardLight;
extern const BlendFormula kHue;
extern const BlendFormula kLighten;
extern const BlendFormula kLinearBurn;
extern const BlendFormula kLuminosity;
extern const BlendFormula kMask;
extern const BlendFormula kMultiply;
extern const BlendFormula kNormal;
extern const BlendFormula kOverlay;
extern const BlendFormula kSaturation;
extern const BlendFormula kScreen;
extern const BlendFormula kSoftLight;
extern const BlendFormula kSourceOver;
extern const BlendFormula kSubtract;
} // namespace blends

/// Sums light. Premultiplied colours:
///
///   out.rgb = min(b.rgb + o.rgb, b.a o.a + R),   out.a = U
class GPUImageAddBlendFilter : public BlendBy<GPUImageAddBlendFilter, blends::kAdd> {};

/// As two slides in one projector: only darkens. Premultiplied colours:
///
///   out = b o + (1 - b.a) o + (1 - o.a) b,   on all four channels, which makes out.a = U
class GPUImageMultiplyBlendFilter : public BlendBy<GPUImageMultiplyBlendFilter, blends::kMultiply> {};

/// As two projectors on one screen: only lightens. Premultiplied colours:
///
///   out = 1 - (1 - b) (1 - o),   on all four channels, which makes out.a = U
class GPUImageScreenBlendFilter : public BlendBy<GPUImageScreenBlendFilter, blends::kScreen> {};

/// Multiplies where the base is dark and screens where it is light. Premultiplied colours, by channel:
///
///   out = 2 b o + R                             where 2 b < b.a
///   out = b.a o.a - 2 (b.a - b) (o.a - o) + R   elsewhere;   out.a = U
class GPUImageOverlayBlendFilter : public BlendBy<GPUImageOverlayBlendFilter, blends::kOverlay> {};

/// Multiplies where the overlay is dark and screens where it is light: as `GPUImageOverlayBlendFilter`, but by
/// 2 o < o.a.
class GPUImageHardLightBlendFilter : public BlendBy<GPUImageHardLightBlendFilter, blends::kHardLight> {};

/// Darkens and lightens without reaching black or white. Premultiplied colours, on all four channels:
///
///   out = b (o.a t + 2 o (1 - t)) + (1 - b.a) o + (1 - o.a) b,   t = b / b.a, 0 where b.a is 0
///
/// which makes out.a = U.
class GPUImageSoftLightBlendFilter : public BlendBy<GPUImageSoftLightBlendFilter, blends::kSoftLight> {};

/// The darker of the two, by channel. Premultiplied colours:
///
///   out.rgb = min(b.a o.rgb, o.a b.rgb) + R,   out.a = 1
class GPUImageDarkenBlendFilter : public BlendBy<GPUImageDarkenBlendFilter, blends::kDarken> {};

/// The lighter of the two, by channel and of alpha: out = max(b, o).
class GPUImageLightenBlendFilter : public BlendBy<GPUImageLightenBlendFilter, blends::kLighten> {};

/// Darkens the base by what the overlay lacks: out = 1 - (1 - b) / o, on all four channels. Where o is 0, out is 1 for
/// a base of 1 and 0 for any other.
class GPUImageColorBurnBlendFilter : public BlendBy<GPUImageColorBurnBlendFilter, blends::kColorBurn> {};

/// Brightens the base by what the overlay has. Premultiplied colours:
///
///   out.rgb = o.a b.rgb / (1 - c) + R    where b.a o.rgb + o.a b.rgb <= b.a o.a,   else   b.a o.a + R
///   c = o.rgb / o.a, with o.a at least 0.01 and c at most 0.99;   out.a = 1
///
/// Black stays black under white. The comparison allows half a step of 8 bits, so that rounding has no say.
class GPUImageColorDodgeBlendFilter : public BlendBy<GPUImageColorDodgeBlendFilter, blends::kColorDodge> {};

/// Sums and takes white away: out.rgb = clamp(b.rgb + o.rgb - 1, 0, 1), out.a = b.a.
class GPUImageLinearBurnBlendFilter : public BlendBy<GPUImageLinearBurnBlendFilter, blends::kLinearBurn> {};

/// How far the two are apart: out.rgb = |o.rgb - b.rgb|, out.a = b.a.
class GPUImageDifferenceBlendFilter : public BlendBy<GPUImageDifferenceBlendFilter, blends::kDifference> {};

/// Takes the overlay's light away: out.rgb = b.rgb - o.rgb, out.a = b.a.
class GPUImageSubtractBlendFilter : public BlendBy<GPUImageSubtractBlendFilter, blends::kSubtract> {};

/// Lightens the base by division. Premultiplied colours, by channel:
///
///   out = b.a o.a + R         where b / o is above b.a / o.a, and where o.a is 0
///   out = b o.a o.a / o + R   elsewhere;   out.a = U
///
/// Black stays black, by black too.
class GPUImageDivideBlendFilter : public BlendBy<GPUImageDivideBlendFilter, blends::kDivide> {};

/// The difference with softer contrasts. Premultiplied colours:
///
///   out.rgb = b.a o.rgb + o.a b.rgb - 2 b.rgb o.rgb + R,   out.a = b.a
class GPUImageExclusionBlendFilter : public BlendBy<GPUImageExclusionBlendFilter, blends::kExclusion> {};

/// Hue of the overlay, saturation and luminance of the base. Premultiplied colours. With c(b) and c(o) the two without
/// their alphas:
///
///   out.rgb = b.a o.a lum(sat(c(o), S(c(b))), Y(c(b))) + R,   out.a = U
///
///   Y(c) = 0.3 red + 0.59 green + 0.11 blue,   S(c) = the largest of the three - the smallest
///   sat(c, s): c stretched so that S is s and its smallest 0; black for a grey
///   lum(c, y): c with the same added to all three so that Y is y, then drawn towards the grey of y as far as it takes
///              to lie between 0 and 1
///
/// W3C, Compositing and Blending Level 1, non-separable blend modes.
class GPUImageHueBlendFilter : public BlendBy<GPUImageHueBlendFilter, blends::kHue> {};

/// Saturation of the overlay, hue and luminance of the base: lum(sat(c(b), S(c(o))), Y(c(b))) in the formula of
/// `GPUImageHueBlendFilter`.
class GPUImageSaturationBlendFilter : public BlendBy<GPUImageSaturationBlendFilter, blends::kSaturation> {};

/// Hue and saturation of the overlay, luminance of the base: lum(c(o), Y(c(b))) in the formula of
/// `GPUImageHueBlendFilter`.
class GPUImageColorBlendFilter : public BlendBy<GPUImageColorBlendFilter, blends::kColor> {};

/// Luminance of the overlay, hue and saturation of the base: lum(c(b), Y(c(o))) in the formula of
/// `GPUImageHueBlendFilter`.
class GPUImageLuminosityBlendFilter : public BlendBy<GPUImageLuminosityBlendFilter, blends::kLuminosity> {};

/// The overlay over the base, both seen by their alphas (Porter and Duff, Compositing Digital Images, 1984: "over"):
///
///   out.rgb = (o.a o.rgb + (1 - o.a) b.a b.rgb) / out.a, 0 where out.a is 0,   out.a = U
class GPUImageNormalBlendFilter : public BlendBy<GPUImageNormalBlendFilter, blends::kNormal> {};

/// The overlay over the base by the overlay's alpha alone: out = (1 - o.a) b + o.a o, on all four channels. Both are
/// read at the base's coordinate: a rotation of slot 1 has no effect.
class GPUImageSourceOverBlendFilter : public BlendBy<GPUImageSourceOverBlendFilter, blends::kSourceOver> {};

/// Cuts the base out by a grey picture: out.rgb = b.rgb, out.a = o.a (o.red + o.green + o.blue) / 3. The base's own
/// alpha has no say.
class GPUImageMaskFilter : public BlendBy<GPUImageMaskFilter, blends::kMask> {};

} // namespace lamina
