import QtQuick
import Lamina

// The dark between a sheet and the work under it. Nothing goes through it.
Rectangle {
    property bool busy: false
    signal tapped()

    anchors.fill: parent
    color: busy ? Tokens.palette.scrimBusy : Tokens.palette.scrim

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onClicked: parent.tapped()
        onWheel: wheel => wheel.accepted = true
    }
}
