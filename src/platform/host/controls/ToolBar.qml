import QtQuick
import Lamina

// The tools of an editor at the foot of a window, over all of its width.
Rectangle {
    id: bar

    // As for a ToolRow.
    required property var tools
    // What the cells share, in the bar's middle.
    property real cellsWidth: width - Tokens.space.s
    property bool spread: false
    signal chosen(string identifier)

    // To the tool that is on.
    function takeFocus() {
        row.takeFocus()
    }

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
        room: bar.cellsWidth
        spread: bar.spread
        tools: bar.tools
        onChosen: identifier => bar.chosen(identifier)
    }
}
