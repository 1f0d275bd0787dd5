#pragma once

#include "editors/common/EditorToolBar.h"

#include <array>
#include <string_view>

namespace lamina {

/// Identifiers of the collage editor's tools.
namespace collagetool {
inline constexpr std::string_view kGallery = "gallery";
inline constexpr std::string_view kLayout = "layout";
inline constexpr std::string_view kTools = "tools";
inline constexpr std::string_view kFilter = "filter";
inline constexpr std::string_view kEffects = "fx";
inline constexpr std::string_view kSticker = "sticker";
inline constexpr std::string_view kReset = "reset";
} // namespace collagetool

/// The collage editor's bar, in its order. The labels are keys, whose English stands with the translations.
inline constexpr std::array<EditorTool, 7> kCollageTools = {{
    {collagetool::kGallery, QT_TRANSLATE_NOOP("Lamina", "gallery"), "Gallery", "Gallery1", 999, false},
    {collagetool::kLayout, QT_TRANSLATE_NOOP("Lamina", "layout"), "Layout", "Layout1", 1000, false},
    {collagetool::kTools, QT_TRANSLATE_NOOP("Lamina", "tools"), "Tools", "Tools1", 1001, false},
    {collagetool::kFilter, QT_TRANSLATE_NOOP("Lamina", "filter"), "Filter", "Filter1", 1002, false},
    {collagetool::kEffects, QT_TRANSLATE_NOOP("Lamina", "fx"), "Fx", "Fx1", 1003, false},
    {collagetool::kSticker, QT_TRANSLATE_NOOP("Lamina", "sticker"), "Sticker", "Sticker1", 1004, false},
    {collagetool::kReset, QT_TRANSLATE_NOOP("Lamina", "reset"), "Reset", "Reset1", 1005, false},
}};

} // namespace lamina
