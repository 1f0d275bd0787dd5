import QtQuick
import Lamina

// What a tray's tools stand on.
Rectangle {
    radius: Tokens.radius.tray
    color: Tokens.palette.panel
    border.width: Tokens.elevation.trayEdge.width
    border.color: Tokens.elevation.trayEdge.color
}
