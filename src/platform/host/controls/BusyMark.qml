import QtQuick
import Lamina

// A small paper panel over work that takes its time and can go on being worked at. Nothing is shown for the first
// moment, so that what is quick does not flicker; it takes no touches.
Item {
    id: mark

    property string text
    property bool running: true
    property bool due: false

    width: 76
    height: width
    visible: due && running
    onRunningChanged: due = false
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Timer {
        interval: 150
        running: mark.running && !mark.due
        onTriggered: mark.due = true
    }
    Paper {
        anchors.fill: parent
        radius: Tokens.radius.hud
        color: Tokens.palette.paperHud
        BusyRing {
            anchors.centerIn: parent
            running: mark.visible
        }
    }
}
