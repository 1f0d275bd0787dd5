import QtQuick
import Lamina

// Shows for a moment which slot is the current one: its outline on the canvas, and how much its button calls.
Item {
    id: pointer

    // A `lamina::UIBezierPath` in a square of side 1.
    property var outline
    property real call: 0

    function pointOut() {
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
        objectName: "slotOutline"
        anchors.fill: parent
        visible: pointer.call > 0
        opacity: pointer.call
        path: pointer.outline
        color: Tokens.palette.accentText
        underColor: Tokens.palette.scrimBusy
        lineWidth: 3
    }
}
