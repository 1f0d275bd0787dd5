#include "editors/common/EditorToolBar.h"

#include <QString>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace lamina {
namespace {

constexpr EditorTool kTools[] = {
    {"reset", "Reset", "Reset", "Reset1", 51, true, false},
    {"pan", "Move", "Pan", "Pan1", 0, false},
    {"fx", "Effects", "Fx", "Fx1", 54},
};

/// The bar in a line: for each tool its tag, icon and name, then * accent colour, # grey, @ drawn grey, - off.
std::string listed(const EditorToolBar& bar)
{
    QString text;
    for (const QVariant& tool : bar.list()) {
        const QVariantMap map = tool.toMap();
        text += QStringLiteral("%1 %2 %3").arg(map["tag"].toInt()).arg(map["icon"].toString(), map["name"].toString());
        const EditorToolCell cell = bar.cell(map["identifier"].toString().toStdString());
        EXPECT_EQ(cell.labelColor, map["active"].toBool() ? kEditorAccentColor : UIColor::white());
        EXPECT_EQ(map["current"].toBool(), map["identifier"] == QString::fromUtf8(bar.mode().data()));
        text += (map["active"].toBool() ? "*" : "") + QString(cell.background == UIColor::gray() ? "#" : "") +
                (map["gray"].toBool() ? "@" : "") + (map["enabled"].toBool() ? ", " : "-, ");
    }
    return text.chopped(2).toStdString();
}

TEST(EditorToolBar, TheActiveToolSetsAllIconsLabelsAndMostlyBackgrounds)
{
    EditorToolBar bar(kTools, "fx");
    EXPECT_EQ(listed(bar), "51 Reset Reset-, 0 Pan Move-, 54 Fx1 Effects*-");
    const std::pair<const char*, const char*> table[] = {
        {"reset", "51 Reset1 Reset*#-, 0 Pan Move, 54 Fx Effects@-"},
        {"pan", "51 Reset Reset#-, 0 Pan1 Move*@, 54 Fx Effects-"},
        {"fx", "51 Reset Reset-, 0 Pan Move, 54 Fx1 Effects*#@-"},
        {"unknown", "51 Reset Reset-, 0 Pan Move, 54 Fx Effects#@-"},
    };
    bar.setEnabled("pan", true);
    for (const auto& [tool, shown] : table) {
        bar.setActiveTool(tool);
        EXPECT_EQ(listed(bar), shown);
    }
    EXPECT_EQ(bar.activeTool(), "");
    bar.clearBackgrounds();
    EXPECT_EQ(listed(bar), "51 Reset Reset-, 0 Pan Move, 54 Fx Effects-");
}

TEST(EditorToolBar, SpacingFollowsTheScreen)
{
    const double table[][2] = {{300, 5}, {320, 1},   {320.5, 2}, {375, 2},  {375.5, 3},
                               {390, 3}, {390.5, 4}, {414, 4},   {414.5, 5}};
    for (const auto& [width, space] : table)
        EXPECT_EQ(toolSpacing(width, {1, 2, 3, 4, 5}), space) << width;
}

} // namespace
} // namespace lamina
