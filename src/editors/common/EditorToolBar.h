#pragma once

#include "platform/base/UIColor.h"

#include <QVariantList>

#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace lamina {

/// The editors' accent colour, 216, 17, 89 of 255 after a trip through single precision.
inline constexpr UIColor kEditorAccentColor{0.8470588326454163, 0.06666667014360428, 0.3490196168422699, 1.0};

/// A tool of an editor, as its table of tools tells it; for tables that live as long as the program.
struct EditorTool {
    std::string_view identifier; ///< what the controller and the layout call it; never shown
    const char* name;            ///< the label, translated where it is shown
    std::string_view icon;       ///< name of the image
    std::string_view activeIcon; ///< its image while it is active
    int tag = 0;                 ///< of its cell in the bar; 0: none
    bool graysCell = true; ///< becoming active, its cell turns grey and the others clear; else all stay as they are
    bool isMode = true;    ///< stays on until another one comes; else it is done at once, and the mode before goes on
};

/// What one cell of the bar shows.
struct EditorToolCell {
    std::string_view icon;
    UIColor labelColor = UIColor::white();
    UIColor background = UIColor::clear();
    bool enabled = false;

    friend bool operator==(const EditorToolCell&, const EditorToolCell&) = default;
};

/// A bar of tools: which tool is active, which cell is grey, what can be chosen. A plain value.
class EditorToolBar {
public:
    /// The tools in their order; `active` is the one that opens active. None is enabled.
    EditorToolBar(std::span<const EditorTool> tools, std::string_view active);

    /// Identifier of the tool that was made active last.
    std::string_view activeTool() const { return m_active; }
    /// Identifier of the mode that is on: the active tool or, where that is none, the last active one that is.
    std::string_view mode() const { return m_mode; }
    /// The cell of a tool; an identifier that is not in the table gives an empty cell.
    EditorToolCell cell(std::string_view tool) const;

    /// Sets all icons and label colours (the active one has the accent colour, all others are white), and the
    /// backgrounds as the tool's `graysCell` says. An unknown tool makes none active.
    void setActiveTool(std::string_view tool);
    /// Turns every cell's background clear.
    void clearBackgrounds();
    /// Default false. A tool that is not enabled is shown, and can't be chosen.
    void setEnabled(std::string_view tool, bool enabled);

    /// The bar for the view that draws it: a map for each tool, in the bar's order, of
    ///   identifier   of the tool
    ///   name         label, translated
    ///   icon         name of the image
    ///   active       its label has the accent colour
    ///   gray         its cell is drawn grey: while any is, that of the mode that is on
    ///   current      it is the mode that is on
    ///   enabled      whether it can be chosen
    ///   tag          of the cell; 0: none
    QVariantList list() const;

    friend bool operator==(const EditorToolBar& one, const EditorToolBar& other)
    {
        return one.m_active == other.m_active && one.m_mode == other.m_mode && one.m_cells == other.m_cells;
    }

private:
    std::span<const EditorTool> m_tools;
    std::string_view m_active;
    std::string_view m_mode;
    std::vector<EditorToolCell> m_cells; ///< one for each of m_tools
};

/// The space between an editor's buttons goes by the screen's width in points: `spaces` names it for 320 exactly, then
/// for up to 375, 390 and 414, and last for all that is wider, or less than 320.
double toolSpacing(double width, const std::array<double, 5>& spaces);

} // namespace lamina
