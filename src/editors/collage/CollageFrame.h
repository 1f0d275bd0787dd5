#pragma once

#include "editors/common/EditorSlider.h"

#include <array>

namespace lamina {

struct CollageComposition;

/// Tags of the sliders for a collage's lines.
namespace collageslider {
inline constexpr int kBorderWidth = 59;
inline constexpr int kGap = 60;
} // namespace collageslider

/// As wide as lines can be, points.
inline constexpr double kWidestCollageLine = 40;

/// The sliders of the panel "frame", in their order.
inline constexpr std::array<EditorSlider, 2> kCollageFrameSliders = {{
    {QT_TRANSLATE_NOOP("Lamina", "Border width"), collageslider::kBorderWidth, 0.0, kWidestCollageLine, 0.0,
     EditorSliderText::Whole, "frame"},
    {QT_TRANSLATE_NOOP("Lamina", "Gap"), collageslider::kGap, 0.0, kWidestCollageLine, 0.0, EditorSliderText::Whole,
     "frame"},
}};

/// The width that a slider of these sets; null for any other tag.
double CollageComposition::*collageLine(int tag);

} // namespace lamina
