import QtQuick
import Lamina

// What will leave the application is paper: a sheet with a hard shadow of stacked edges. Its content lies on it.
Item {
    id: paper

    // "paper", or "print": a photo's print, which lies lower and is a little rounded.
    property string role: "paper"
    property real radius: role === "print" ? Tokens.radius.photoPrint : Tokens.radius.paper
    property alias color: sheet.color
    default property alias content: sheet.data

    Repeater {
        model: paper.role === "print" ? Tokens.elevation.photoPrint : Tokens.elevation.paper
        delegate: Rectangle {
            required property var modelData
            x: -modelData.grow
            y: -modelData.grow + modelData.offset
            z: -1
            width: paper.width + 2 * modelData.grow
            height: paper.height + 2 * modelData.grow
            radius: paper.radius
            color: Tokens.palette.shadow
            opacity: modelData.alpha
            antialiasing: true
        }
    }
    Rectangle {
        id: sheet
        anchors.fill: parent
        radius: paper.radius
        color: Tokens.palette.paper
        antialiasing: true
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -Tokens.elevation.paperEdge.width
        visible: paper.radius === 0
        color: "transparent"
        border.width: Tokens.elevation.paperEdge.width
        border.color: Tokens.elevation.paperEdge.color
    }
}
