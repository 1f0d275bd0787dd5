import QtQuick
import Lamina

// The tools of an editor side by side, from a list of {identifier, name, icon, active, gray, enabled}.
Row {
    id: row

    required property var tools
    // Width that the cells may take together.
    required property real room
    signal chosen(string identifier)

    readonly property int count: tools.length
    readonly property real cellWidth: Math.min(68, Math.floor((room - (count - 1) * spacing) / Math.max(1, count)))
    // Names are not wrapped and not cut: where one would not fit, all of them are smaller.
    readonly property int labelSize: {
        const widest = tools.reduce((most, tool) => Math.max(most, letters.advanceWidth(tool.name)), 1)
        const fitting = Math.floor(letters.font.pixelSize * Math.min(1, (cellWidth - 2) / widest))
        return Math.max(Tokens.type.minimum, fitting)
    }

    spacing: 2

    FontMetrics {
        id: letters
        font.pixelSize: Theme.textSize(Tokens.type.label.size)
        font.weight: Tokens.type.label.weightActive
    }
    Repeater {
        // The count alone: a cell outlives a change of its tool, and keeps the keyboard.
        model: row.count
        delegate: ToolCell {
            required property int index
            readonly property var tool: row.tools[index]
            width: row.cellWidth
            label: tool.name
            labelSize: row.labelSize
            iconName: tool.icon
            active: tool.active
            gray: tool.gray
            enabled: tool.enabled
            onClicked: row.chosen(tool.identifier)
        }
    }
}
