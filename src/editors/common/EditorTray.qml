import QtQuick
import Lamina

// The tools within a tool: a tray over the bar of tools, or a row in the side panel.
EditorPanel {
    id: tray

    // As for a ToolRow.
    required property var tools
    property var swatches: ({})
    signal chosen(string identifier)

    readonly property real sides: layout.wide || layout.small || layout.tablet ? 0 : Tokens.space.xs

    kind: "tray"
    wanted: grid.whole + 2 * edge + foot

    ToolGrid {
        id: grid
        x: tray.sides
        width: parent.width - 2 * x
        height: tray.layout.wide ? whole : parent.height
        oneRow: !tray.layout.small
        cellHeight: tray.layout.cellHeight
        tools: tray.tools
        swatches: tray.swatches
        onChosen: identifier => tray.chosen(identifier)
    }
}
