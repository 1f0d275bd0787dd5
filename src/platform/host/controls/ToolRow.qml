import QtQuick
import Lamina

// The tools of an editor side by side, from a list of {name, icon, active, gray, enabled}.
Row {
    id: row

    required property var tools
    // Width that the cells may take together.
    property real room: parent ? parent.width : 0
    signal chosen(int index)

    readonly property int count: tools.length
    readonly property real cellWidth: Math.min(68, Math.floor((room - 8 - (count - 1) * spacing) / Math.max(1, count)))

    spacing: 2

    Repeater {
        model: row.tools
        delegate: ToolCell {
            required property var modelData
            required property int index
            width: row.cellWidth
            label: modelData.name
            iconName: modelData.icon
            active: modelData.active
            gray: modelData.gray
            enabled: modelData.enabled
            onClicked: row.chosen(index)
        }
    }
}
