import QtQuick
import Lamina

// Shows for a moment which slot is the current one: its outline on the canvas, and how much its button calls.
Item {
    id: pointer

    required property var controller
    property real call: 0

    function pointOut() {
        line.paths = controller.slotOutline()
        motion.restart()
    }

    SequentialAnimation {
        id: motion
        NumberAnimation {
            target: pointer; property: "call"; to: 1
            duration: Theme.duration(Tokens.motion.mark); easing.type: Easing.OutCubic
        }
        PauseAnimation { duration: 3 * Tokens.motion.mark }
        NumberAnimation {
            target: pointer; property: "call"; to: 0
            duration: Theme.duration(Tokens.motion.mark); easing.type: Easing.InCubic
        }
    }
    Outline {
        id: line
        objectName: "slotOutline"
        anchors.fill: parent
        visible: pointer.call > 0
        opacity: pointer.call
        color: Tokens.palette.accentText
        underColor: Tokens.palette.scrimBusy
        lineWidth: 3
    }
}
