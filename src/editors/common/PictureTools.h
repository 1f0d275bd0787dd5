#pragma once

#include "editors/common/EditorToolBar.h"
#include "platform/base/UIColor.h"
#include "platform/image/pixels/UIImage.h"

#include <QString>

#include <array>
#include <string_view>

namespace lamina {

/// Identifiers of the sub-tools that editors have for one photo.
namespace picturetool {
inline constexpr std::string_view kLeft = "left";
inline constexpr std::string_view kRight = "right";
inline constexpr std::string_view kHorizontal = "horizontal";
inline constexpr std::string_view kVertical = "vertical";
inline constexpr std::string_view kColor = "color";
} // namespace picturetool

/// Their strip, in its order. They have no cells that turn grey.
inline constexpr std::array<EditorTool, 5> kPictureTools = {{
    {picturetool::kLeft, QT_TRANSLATE_NOOP("Lamina", "Left"), "Left", "Left1", 0, false},
    {picturetool::kRight, QT_TRANSLATE_NOOP("Lamina", "Right"), "Right", "Right1", 0, false},
    {picturetool::kHorizontal, QT_TRANSLATE_NOOP("Lamina", "Flip H"), "Horizontal", "Horizontal1", 0, false},
    {picturetool::kVertical, QT_TRANSLATE_NOOP("Lamina", "Flip V"), "Vertical", "Vertical1", 0, false},
    {picturetool::kColor, QT_TRANSLATE_NOOP("Lamina", "Color"), "Color", "Color1", 0, false},
}};

/// The strip with all of them enabled and none active.
EditorToolBar makePictureToolBar();

/// What a sub-tool does to a photo's pixels; null for `kColor` and what is no sub-tool. The tools turn by a quarter, to
/// the left (counter-clockwise) or right, or mirror: left and right change places, or top and bottom.
using PictureOperation = UIImage (*)(const UIImage& image);
PictureOperation pictureOperation(std::string_view tool);

/// "#aarrggbb", as layouts read a colour.
QString colorText(const UIColor& color);

} // namespace lamina
