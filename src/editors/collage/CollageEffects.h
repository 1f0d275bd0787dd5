#pragma once

#include "editors/common/EditorSlider.h"

#include <QCoreApplication>

#include <array>
#include <cstddef>

namespace lamina {

/// Tags of the collage editor's sliders.
namespace collageslider {
inline constexpr int kContrast = 50;
inline constexpr int kBrightness = 51;
inline constexpr int kEmboss = 52;
inline constexpr int kSharpen = 53;
inline constexpr int kUnsharpen = 54;
inline constexpr int kVignette = 55;
inline constexpr int kSaturation = 56;
inline constexpr int kHighlight = 57;
inline constexpr int kOpacity = 58;
inline constexpr int kBorderWidth = 59;
inline constexpr int kGap = 60;
} // namespace collageslider

/// Sliders of the effects panel: the first of the table.
inline constexpr std::size_t kCollageEffectCount = 9;

/// As wide as a border or a gap can be, points.
inline constexpr double kWidestCollageLine = 40;

/// The sliders of the collage editor, in the order of their tags. The labels are keys, whose English stands with the
/// translations.
inline constexpr std::array<EditorSlider, 11> kCollageSliders = {{
    {QT_TRANSLATE_NOOP("Lamina", "contrast"), collageslider::kContrast, -200.0, 200.0, 0.0, EditorSliderText::Signed},
    {QT_TRANSLATE_NOOP("Lamina", "brightness"), collageslider::kBrightness, -200.0, 200.0, 0.0,
     EditorSliderText::Signed},
    {QT_TRANSLATE_NOOP("Lamina", "emboss"), collageslider::kEmboss, -200.0, 200.0, 0.0, EditorSliderText::Signed},
    {QT_TRANSLATE_NOOP("Lamina", "sharpen"), collageslider::kSharpen, -200.0, 200.0, 0.0, EditorSliderText::Signed},
    {QT_TRANSLATE_NOOP("Lamina", "unsharpen"), collageslider::kUnsharpen, -200.0, 200.0, 0.0, EditorSliderText::Signed},
    {QT_TRANSLATE_NOOP("Lamina", "vignette"), collageslider::kVignette, 0.0, 0.5, 0.5, EditorSliderText::TwoDecimals},
    {QT_TRANSLATE_NOOP("Lamina", "saturation"), collageslider::kSaturation, 0.0, 2.0, 1.0,
     EditorSliderText::TwoDecimals},
    {QT_TRANSLATE_NOOP("Lamina", "highlight"), collageslider::kHighlight, 0.0, 1.0, 1.0, EditorSliderText::TwoDecimals},
    {QT_TRANSLATE_NOOP("Lamina", "opacity"), collageslider::kOpacity, 0.0, 1.0, 1.0, EditorSliderText::Percent},
    {QT_TRANSLATE_NOOP("Lamina", "Border width"), collageslider::kBorderWidth, 0.0, kWidestCollageLine, 0.0,
     EditorSliderText::Whole, "frame"},
    {QT_TRANSLATE_NOOP("Lamina", "Gap"), collageslider::kGap, 0.0, kWidestCollageLine, 0.0, EditorSliderText::Whole,
     "frame"},
}};

/// The place of an effect's slider in the table, and of all that is kept for each of them.
constexpr std::size_t collageEffectIndex(int tag)
{
    return static_cast<std::size_t>(tag - collageslider::kContrast);
}

/// Whether the tag is that of an effect.
constexpr bool isCollageEffect(int tag)
{
    return tag >= collageslider::kContrast && tag <= collageslider::kOpacity;
}

/// Where they stand when the editor opens, in their order.
inline constexpr std::array<double, kCollageEffectCount> kCollageSliderStarts = [] {
    std::array<double, kCollageEffectCount> starts{};
    for (std::size_t effect = 0; effect < kCollageEffectCount; ++effect)
        starts[effect] = kCollageSliders[effect].start;
    return starts;
}();

} // namespace lamina
