import QtQuick
import Lamina

// The first tile: the camera behind a veil. Where there is none the veil is closed and the icon struck through.
Rectangle {
    id: camera

    required property var theme
    // A YMSCameraCell; null: none yet.
    required property QtObject cell

    readonly property bool available: cell !== null && cell.available === true

    // Of UIDeviceOrientation: the window turns with the device, what the camera sees is turned back.
    readonly property var turns: ({ 2: 180, 3: -90, 4: 90 })
    property int orientation: 1

    function lookUpOrientation() {
        orientation = cell && cell.previewOrientation ? cell.previewOrientation() : 1
    }

    color: Tokens.palette.field
    onCellChanged: lookUpOrientation()
    onWidthChanged: lookUpOrientation()
    onHeightChanged: lookUpOrientation()

    Picture {
        readonly property bool lies: camera.orientation > 2
        anchors.centerIn: parent
        width: lies ? parent.height : parent.width
        height: lies ? parent.width : parent.height
        rotation: camera.turns[camera.orientation] ?? 0
        picture: camera.cell ? camera.cell.preview : undefined
    }
    Rectangle {
        anchors.fill: parent
        color: camera.theme.cameraVeilColor
        opacity: camera.cell ? camera.cell.veilAlpha : 1
    }
    Item {
        anchors.centerIn: parent
        width: 36
        height: 36
        opacity: camera.available ? 1 : 0.7
        Icon {
            anchors.fill: parent
            name: "camera"
            tint: camera.theme.cameraIconColor
        }
        // From corner to corner, a gap in the veil's colour beside it.
        Rectangle {
            visible: !camera.available
            anchors.centerIn: parent
            width: 46
            height: 8
            rotation: 45
            antialiasing: true
            color: camera.theme.cameraVeilColor
            Rectangle {
                anchors.centerIn: parent
                width: parent.width
                height: 2.5
                radius: height / 2
                antialiasing: true
                color: camera.theme.cameraIconColor
            }
        }
    }
}
