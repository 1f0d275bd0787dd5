import QtQuick
import Lamina

// The tools within a tool: a tray over the bar of tools, or a row in the side panel.
EditorPanel {
    id: tray

    // As for a ToolRow.
    required property var tools
    property var swatches: ({})
    // Stands under the tools where a side panel has room for it.
    property string hint
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
    StyledText {
        visible: tray.layout.wide && text !== "" && y + height <= parent.height
        y: grid.height + Tokens.space.l
        width: parent.width
        text: tray.hint
        role: Tokens.type.caption
        color: Tokens.palette.textSecondary
        Accessible.name: text
    }
}
