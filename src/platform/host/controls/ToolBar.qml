import QtQuick
import Lamina

// The tools of an editor at the foot of a window, over all of its width.
Rectangle {
    id: bar

    // As for a ToolRow.
    required property var tools
    signal chosen(string identifier)

    implicitHeight: Math.max(Tokens.bars.tools, row.implicitHeight + Tokens.space.xxl)
    color: Tokens.palette.panel

    Rectangle {
        width: parent.width
        height: 1
        color: Tokens.palette.hairline
    }
    ToolRow {
        id: row
        y: 9
        anchors.horizontalCenter: parent.horizontalCenter
        room: bar.width - Tokens.space.s
        tools: bar.tools
        onChosen: identifier => bar.chosen(identifier)
    }
}
