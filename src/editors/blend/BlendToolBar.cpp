#include "editors/blend/BlendToolBar.h"

namespace lamina {

namespace {

struct ToolNames {
    const char* plain;
    const char* active;
    int tag;
};

constexpr std::array<ToolNames, 5> kTools = {{
    {"Reset", "Reset1", 51},
    {"Pan", "Pan1", 0},
    {"Tools", "Tools1", 53},
    {"Fx", "Fx1", 54},
    {"Sticker", "Sticker1", 55},
}};

} // namespace

BlendToolBar::BlendToolBar()
{
    for (BlendToolCell& cell : m_cells)
        cell.background = UIColor::clear();
    setActiveTool(BlendTool::Pan);
}

int BlendToolBar::tag(BlendTool tool)
{
    return kTools[static_cast<std::size_t>(tool)].tag;
}

void BlendToolBar::setActiveTool(BlendTool tool)
{
    m_active = tool;
    const std::size_t active = static_cast<std::size_t>(tool);
    for (std::size_t i = 0; i < kTools.size(); ++i) {
        m_cells[i].imageName = i == active ? kTools[i].active : kTools[i].plain;
        m_cells[i].labelColor = i == active ? kEditorAccentColor : UIColor::white();
        if (tool != BlendTool::Pan)
            m_cells[i].background = i == active ? UIColor::gray() : UIColor::clear();
    }
}

void BlendToolBar::clearBackgrounds()
{
    for (BlendToolCell& cell : m_cells)
        cell.background = UIColor::clear();
}

double blendToolSpacing(double width)
{
    if (width < 320.0)
        return 47.0;
    if (width == 320.0)
        return 25.0;
    if (width <= 375.0)
        return 35.0;
    if (width <= 390.0)
        return 38.0;
    if (width <= 414.0)
        return 43.0;
    return 47.0;
}

} // namespace lamina
