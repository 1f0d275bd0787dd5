#include "editors/blend/BlendToolBar.h"

#include <gtest/gtest.h>
#include <string>

namespace lamina {
namespace {

struct BarCase {
    BlendTool tool;
    int greyTag; ///< 0: backgrounds stay
    const char* images[5];
};

TEST(BlendToolBar, EachToolSetsAllImagesAndLabels)
{
    const BarCase table[] = {
        {BlendTool::Reset, 51, {"Reset1", "Pan", "Tools", "Fx", "Sticker"}},
        {BlendTool::Tools, 53, {"Reset", "Pan", "Tools1", "Fx", "Sticker"}},
        {BlendTool::Effects, 54, {"Reset", "Pan", "Tools", "Fx1", "Sticker"}},
        {BlendTool::Stickers, 55, {"Reset", "Pan", "Tools", "Fx", "Sticker1"}},
        {BlendTool::Pan, 0, {"Reset", "Pan1", "Tools", "Fx", "Sticker"}},
    };
    const BlendTool order[] = {BlendTool::Reset, BlendTool::Pan, BlendTool::Tools, BlendTool::Effects,
                               BlendTool::Stickers};
    BlendToolBar bar;
    int grey = 0;
    for (const BarCase& row : table) {
        bar.setActiveTool(row.tool);
        grey = row.greyTag != 0 ? row.greyTag : grey;
        for (int i = 0; i < 5; ++i) {
            const BlendToolCell& cell = bar.cell(order[i]);
            SCOPED_TRACE(row.images[i]);
            EXPECT_EQ(cell.imageName, std::string(row.images[i]));
            EXPECT_EQ(cell.labelColor, order[i] == row.tool ? kEditorAccentColor : UIColor::white());
            const bool isGrey = BlendToolBar::tag(order[i]) == grey;
            EXPECT_EQ(cell.background, isGrey ? UIColor::gray() : UIColor::clear());
        }
    }
}

TEST(BlendToolBar, SpacingFollowsTheScreen)
{
    const double table[][2] = {{300, 47}, {320, 25},   {320.5, 35}, {375, 35},   {375.5, 38},
                               {390, 38}, {390.5, 43}, {414, 43},   {414.5, 47}, {430, 47}};
    for (const auto& [width, spacing] : table)
        EXPECT_EQ(blendToolSpacing(width), spacing) << width;
}

} // namespace
} // namespace lamina
