import QtQuick
import Lamina

// Where the tools stand in a wide window: at its right, over the full height.
Rectangle {
    x: parent.width - width
    width: Tokens.bars.sidePanel
    height: parent.height
    color: Tokens.palette.panel

    Rectangle {
        width: 1
        height: parent.height
        color: Tokens.palette.hairline
    }
}
