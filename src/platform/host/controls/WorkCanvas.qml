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

    // By the place of a key in the table; -1 is none.
    function nudge(way, points) {
        const ways = [[-1, 0], [1, 0], [0, -1], [0, 1]]
        if (way >= 0)
            controller.nudge(points * ways[way][0], points * ways[way][1])
        return way >= 0
    }
    function zoom(way) {
        if (way >= 0)
            controller.zoomBy(way === 1 ? 1 / zoomStep : zoomStep)
        return way >= 0
    }

    Keys.onPressed: event => {
        const pressed = command => KeyTable.find(command, event.key, event.modifiers)
        event.accepted = nudge(pressed("move"), 1) || nudge(pressed("moveFar"), 10) || zoom(pressed("zoom"))
    }

    CanvasControls {
        canvas: canvas
    }

    FocusRing {
        z: 1
        control: canvas
        inside: canvas.width + 2 * (Tokens.focus.gap + Tokens.focus.ring) > canvas.Window.width
    }
}
