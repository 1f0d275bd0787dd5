#include "editors/common/EditorToolBar.h"

#include "platform/base/Localization.h"

#include <QString>
#include <QVariantMap>

#include <algorithm>
#include <cstddef>

namespace lamina {

namespace {

QString qtString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

EditorToolBar::EditorToolBar(std::span<const EditorTool> tools, std::string_view active)
    : m_tools(tools)
    , m_cells(tools.size())
{
    setActiveTool(active);
    clearBackgrounds();
}

EditorToolCell EditorToolBar::cell(std::string_view tool) const
{
    for (std::size_t i = 0; i < m_tools.size(); ++i) {
        if (m_tools[i].identifier == tool)
            return m_cells[i];
    }
    return {};
}

void EditorToolBar::setActiveTool(std::string_view tool)
{
    m_active = {};
    bool grays = false;
    for (std::size_t i = 0; i < m_tools.size(); ++i) {
        const bool active = m_tools[i].identifier == tool;
        if (active)
            m_active = m_tools[i].identifier;
        if (active && m_tools[i].isMode)
            m_mode = m_active;
        m_cells[i].icon = active ? m_tools[i].activeIcon : m_tools[i].icon;
        m_cells[i].labelColor = active ? kEditorAccentColor : UIColor::white();
        grays = grays || (active && m_tools[i].graysCell);
    }
    for (std::size_t i = 0; grays && i < m_tools.size(); ++i)
        m_cells[i].background = m_tools[i].identifier == tool ? UIColor::gray() : UIColor::clear();
}

void EditorToolBar::clearBackgrounds()
{
    for (EditorToolCell& cell : m_cells)
        cell.background = UIColor::clear();
}

void EditorToolBar::setEnabled(std::string_view tool, bool enabled)
{
    for (std::size_t i = 0; i < m_tools.size(); ++i) {
        if (m_tools[i].identifier == tool)
            m_cells[i].enabled = enabled;
    }
}

QVariantList EditorToolBar::list() const
{
    QVariantList list;
    const bool grays = std::any_of(m_cells.begin(), m_cells.end(),
                                   [](const EditorToolCell& cell) { return cell.background == UIColor::gray(); });
    for (std::size_t i = 0; i < m_tools.size(); ++i) {
        const EditorTool& tool = m_tools[i];
        list << QVariantMap{
            {"identifier", qtString(tool.identifier)},
            {"name", QString::fromStdString(localizedString(tool.name))},
            {"icon", qtString(m_cells[i].icon)},
            {"active", tool.identifier == m_active},
            {"gray", grays && tool.identifier == m_mode},
            {"current", tool.identifier == m_mode},
            {"enabled", m_cells[i].enabled},
            {"tag", tool.tag},
        };
    }
    return list;
}

double toolSpacing(double width, const std::array<double, 5>& spaces)
{
    const auto& [smallest, small, medium, large, widest] = spaces;
    if (width < 320.0)
        return widest;
    if (width == 320.0)
        return smallest;
    if (width <= 375.0)
        return small;
    if (width <= 390.0)
        return medium;
    return width <= 414.0 ? large : widest;
}

} // namespace lamina
