import QtQuick
import Lamina

// The dark between a sheet and the work under it. Nothing goes through it.
Rectangle {
    property bool busy: false
    // Of a sheet: the dark comes and goes with it.
    property bool shown: true
    signal tapped()

    anchors.fill: parent
    opacity: shown ? 1 : 0
    Behavior on opacity {
        NumberAnimation { duration: Theme.duration(Tokens.motion.fade); easing.type: Easing.OutCubic }
    }
    color: busy ? Tokens.palette.scrimBusy : Tokens.palette.scrim

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onClicked: parent.tapped()
        onWheel: wheel => wheel.accepted = true
    }
}
