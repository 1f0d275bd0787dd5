import QtQuick
import Lamina

// The tools of an editor as a panel beside the canvas of a small window. It stands on the foot of its place, is
// scrolled where that is too low, and then ends in a cut tool.
Item {
    id: tray

    // As for a ToolRow.
    required property var tools
    property int perRow: 0
    property real cellHeight: Tokens.touch.toolCell
    // Where the panel begins in its place.
    readonly property real start: panel.y
    signal chosen(string identifier)

    readonly property real padding: Tokens.space.xs
    readonly property int rows: perRow > 0 ? Math.ceil(tools.length / perRow) : 1
    readonly property real pitch: cellHeight + 6
    readonly property real whole: rows * pitch + 14
    readonly property real shown: height - padding
    // As many whole cells as there is room for, and then a bit more than a half of one.
    readonly property real cutPitch: shown / (Math.max(0, Math.floor(shown / (cellHeight + 2) - 0.6)) + 0.6)

    Rectangle {
        id: panel
        y: parent.height - height
        width: parent.width
        height: Math.min(parent.height, tray.whole)
        radius: Tokens.radius.tray
        color: Tokens.palette.panel
        border.width: Tokens.elevation.trayEdge.width
        border.color: Tokens.elevation.trayEdge.color

        ScrollPage {
            id: page
            anchors.fill: parent
            anchors.margins: 1
            contentHeight: row.y + row.height + tray.padding
            clip: interactive
            slack: tray.padding

            ToolRow {
                id: row
                readonly property bool fits: tray.height >= tray.whole
                y: fits ? (panel.height - height) / 2 - 1 : tray.padding
                x: (page.width - width) / 2
                room: page.width
                spread: true
                perRow: tray.perRow
                rowSpacing: (fits ? tray.pitch : Math.max(tray.cellHeight + 2, tray.cutPitch)) - tray.cellHeight
                tools: tray.tools
                onChosen: identifier => tray.chosen(identifier)
            }
        }
    }
}
