#pragma once

#include "platform/base/UIColor.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace lamina {

/// The editors' accent colour, 216, 17, 89 of 255 after a trip through single precision.
inline constexpr UIColor kEditorAccentColor{0.8470588326454163, 0.06666667014360428, 0.3490196168422699, 1.0};

/// The five tools of the blend editor's bar, in their order.
enum class BlendTool { Reset, Pan, Tools, Effects, Stickers };

/// What one cell of the bar shows.
struct BlendToolCell {
    std::string_view imageName; ///< the "1" variant while its tool is active
    UIColor labelColor;
    UIColor background;

    friend bool operator==(const BlendToolCell&, const BlendToolCell&) = default;
};

/// The bar's look: which tool was set last, and which cell is grey. A plain value.
class BlendToolBar {
public:
    BlendToolBar();

    BlendTool activeTool() const { return m_active; }
    const BlendToolCell& cell(BlendTool tool) const { return m_cells[static_cast<std::size_t>(tool)]; }
    /// Tag of a tool's cell in the bar; 0 for pan, which has none.
    static int tag(BlendTool tool);

    /// Sets all images and label colours. The cell of the tool turns grey and the others clear, but for pan, which
    /// leaves the backgrounds as they are.
    void setActiveTool(BlendTool tool);
    /// Turns every cell's background clear.
    void clearBackgrounds();

    friend bool operator==(const BlendToolBar&, const BlendToolBar&) = default;

private:
    BlendTool m_active = BlendTool::Pan;
    std::array<BlendToolCell, 5> m_cells;
};

/// Space between the bar's buttons for a screen `width` points wide.
double blendToolSpacing(double width);

} // namespace lamina
