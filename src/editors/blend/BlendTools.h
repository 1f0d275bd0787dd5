#pragma once

#include "editors/common/EditorSlider.h"
#include "editors/common/EditorToolBar.h"

#include <array>
#include <string_view>

namespace lamina {

/// Identifiers of the blend editor's tools.
namespace blendtool {
inline constexpr std::string_view kReset = "reset";
inline constexpr std::string_view kPan = "pan";
inline constexpr std::string_view kTools = "tools";
inline constexpr std::string_view kEffects = "effects";
inline constexpr std::string_view kStickers = "stickers";
} // namespace blendtool

/// The blend editor's bar, in its order. The label of the pan tool says what it does: move. "fx" is a key,
/// whose English stands with the translations.
inline constexpr std::array<EditorTool, 5> kBlendTools = {{
    {blendtool::kReset, QT_TRANSLATE_NOOP("Lamina", "Reset"), "Reset", "Reset1", 51, true, false},
    {blendtool::kPan, QT_TRANSLATE_NOOP("Lamina", "Move"), "Pan", "Pan1", 0, false},
    {blendtool::kTools, QT_TRANSLATE_NOOP("Lamina", "Tools"), "Tools", "Tools1", 53},
    {blendtool::kEffects, QT_TRANSLATE_NOOP("Lamina", "fx"), "Fx", "Fx1", 54},
    {blendtool::kStickers, QT_TRANSLATE_NOOP("Lamina", "Sticker"), "Sticker", "Sticker1", 55},
}};

/// Tags of the sliders.
namespace blendslider {
inline constexpr int kContrast = 50;
inline constexpr int kBrightness = 51;
inline constexpr int kOpacity = 52;
} // namespace blendslider

/// The sliders of the effects panel, in their order: `BlendComposition::sliders` has a value for each. The labels are
/// keys, whose English stands with the translations.
inline constexpr std::array<EditorSlider, 3> kBlendSliders = {{
    {QT_TRANSLATE_NOOP("Lamina", "contrast"), blendslider::kContrast, -200.0, 200.0, 0.0, EditorSliderText::Signed},
    {QT_TRANSLATE_NOOP("Lamina", "brightness"), blendslider::kBrightness, -200.0, 200.0, 0.0, EditorSliderText::Signed},
    {QT_TRANSLATE_NOOP("Lamina", "opacity"), blendslider::kOpacity, 0.1, 1.0, 0.5, EditorSliderText::Percent},
}};

/// Where they stand when their panel opens.
inline constexpr std::array<double, kBlendSliders.size()> kBlendSliderStarts = {
    kBlendSliders[0].start, kBlendSliders[1].start, kBlendSliders[2].start};

/// Identifiers of what can be done with one photo.
namespace photoaction {
inline constexpr std::string_view kReplace = "replace";
inline constexpr std::string_view kCrop = "crop";
inline constexpr std::string_view kSwap = "swap";
} // namespace photoaction

/// The menu of a photo, in its order.
inline constexpr std::array<EditorTool, 3> kBlendPhotoActions = {{
    {photoaction::kReplace, QT_TRANSLATE_NOOP("Lamina", "Replace"), "replace", "replace"},
    {photoaction::kCrop, QT_TRANSLATE_NOOP("Lamina", "Crop again"), "crop", "crop"},
    {photoaction::kSwap, QT_TRANSLATE_NOOP("Lamina", "Swap"), "swap", "swap"},
}};

/// Points between the bar's buttons; see toolSpacing.
inline constexpr std::array<double, 5> kBlendToolSpaces = {25, 35, 38, 43, 47};

} // namespace lamina
