import QtQuick
import QtQuick.Templates as T
import Lamina

// A circle drawn in a picture that can be pressed. For fingers and the mouse alone: a button with words says the same
// to keys and to those who hear the screen.
T.Button {
    id: circle

    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    Accessible.ignored: true
    // The corners of its square are not it.
    containmentMask: QtObject {
        function contains(point: point) : bool {
            return Math.hypot(point.x - circle.width / 2, point.y - circle.height / 2) <= circle.width / 2
        }
    }
    background: Rectangle {
        radius: width / 2
        color: circle.down ? Tokens.palette.hairline : Tokens.palette.outline
        opacity: circle.down ? 1 : circle.hovered ? 0.6 : 0
    }
}
