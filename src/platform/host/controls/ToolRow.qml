import QtQuick
import Lamina

// The tools of an editor side by side, from a list of {identifier, name, icon, active, gray, current,
// enabled}, and `disc` where it is the main one.
Grid {
    id: row

    required property var tools
    // Width that the cells may take together.
    required property real room
    // Cells in one row; 0: all of them.
    property int perRow: 0
    // The cells share the room evenly. Off: they stand together.
    property bool spread: false
    // Colours to be shown on the icons of some, by their identifiers.
    property var swatches: ({})
    signal chosen(string identifier)

    readonly property int count: tools.length
    readonly property real share: room / columns
    // Where there is little room, first what is between them gives way, down to cells as narrow as can be pressed.
    property real widestGap: 2
    readonly property real gap: columns > 1 ? Math.max(0, Math.min(widestGap, (room - columns * narrow) / (columns - 1))) : 0
    readonly property real narrow: 50
    readonly property real cellWidth: Math.min(68, Math.max(Tokens.touch.minimum,
        Math.floor(spread ? share : (room - (columns - 1) * gap) / columns)))

    columns: Math.max(1, perRow > 0 ? perRow : count)
    columnSpacing: spread ? share - cellWidth : gap

    // Names are not wrapped and not cut: where one would not fit, all of them are smaller.
    LabelFit {
        id: fit
        texts: row.tools.map(tool => tool.name)
        room: row.cellWidth
        role: Tokens.type.label
        weight: Tokens.type.label.weightActive
    }
    // To the tool that is on.
    function takeFocus() {
        const cell = cells.itemAt(Math.max(0, tools.findIndex(tool => tool.current)))
        if (cell)
            cell.forceActiveFocus(Qt.TabFocusReason)
    }
    Repeater {
        id: cells
        // The count alone: a cell outlives a change of its tool, and keeps the keyboard.
        model: row.count
        delegate: ToolCell {
            required property int index
            readonly property var tool: row.tools[index]
            width: row.cellWidth
            label: tool.name
            labelSize: fit.size
            iconName: tool.icon
            active: tool.active
            gray: tool.gray
            current: tool.current
            enabled: tool.enabled
            disc: tool.disc ?? false
            swatch: row.swatches[tool.identifier] ?? "transparent"
            onClicked: row.chosen(tool.identifier)
        }
    }
}
