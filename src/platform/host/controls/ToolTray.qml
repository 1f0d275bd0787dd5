import QtQuick
import Lamina

// The tools of an editor as a panel beside the canvas of a small window. It stands on the foot of its place.
Item {
    id: tray

    // As for a ToolGrid.
    required property var tools
    property real cellHeight: Tokens.touch.toolCell
    // Where the panel begins in its place.
    readonly property real start: panel.y
    signal chosen(string identifier)

    // To the tool that is on.
    function takeFocus() {
        grid.takeFocus()
    }

    TrayCard {
        id: panel
        y: parent.height - height
        width: parent.width
        height: Math.min(parent.height, grid.whole + 2)

        ToolGrid {
            id: grid
            anchors.fill: parent
            anchors.margins: 1
            cellHeight: tray.cellHeight
            tools: tray.tools
            onChosen: identifier => tray.chosen(identifier)
        }
    }
}
