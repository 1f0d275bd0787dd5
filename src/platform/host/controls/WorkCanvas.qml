import QtQuick
import Lamina

// The canvas of an editor, worked by keys too: arrows move what lies on it by a point, with Shift by ten; plus and
// minus zoom. A screen forwards its keys here, so that they work wherever the focus is and nothing else wants them.
ViewCanvas {
    id: canvas

    readonly property real zoomStep: 1.1

    objectName: "canvas"
    focus: true
    activeFocusOnTab: true
    Accessible.role: Accessible.Graphic
    Accessible.focusable: true

    Keys.onPressed: event => {
        const far = event.modifiers & Qt.ShiftModifier ? 10 : 1
        const ways = { [Qt.Key_Left]: [-far, 0], [Qt.Key_Right]: [far, 0], [Qt.Key_Up]: [0, -far], [Qt.Key_Down]: [0, far] }
        event.accepted = true
        if (event.modifiers & (Qt.ControlModifier | Qt.AltModifier))
            event.accepted = false
        else if (event.key in ways)
            controller.nudge(ways[event.key][0], ways[event.key][1])
        else if (event.key === Qt.Key_Plus || event.key === Qt.Key_Equal)
            controller.zoomBy(zoomStep)
        else if (event.key === Qt.Key_Minus)
            controller.zoomBy(1 / zoomStep)
        else
            event.accepted = false
    }

    CanvasControls {
        canvas: canvas
    }

    FocusRing {
        z: 1
        shown: canvas.visualFocus
    }
}
