import QtQuick
import Lamina

// Turns while something is under way and nobody knows how long.
Item {
    id: ring

    property bool running: true
    property color color: Tokens.palette.overPaperHud
    implicitWidth: 38
    implicitHeight: 38
    Accessible.ignored: true

    readonly property int dots: 12

    Repeater {
        model: ring.dots
        delegate: Rectangle {
            required property int index
            readonly property real angle: index / ring.dots * 2 * Math.PI
            width: 5
            height: 5
            radius: 2.5
            x: ring.width / 2 + (ring.width / 2 - 3) * Math.sin(angle) - width / 2
            y: ring.height / 2 - (ring.height / 2 - 3) * Math.cos(angle) - height / 2
            color: ring.color
            opacity: 0.2 + 0.8 * (((index - ring.head) % ring.dots + ring.dots) % ring.dots) / (ring.dots - 1)
        }
    }
    // Steps, not a smooth turn: twelve small repaints a second leave the processor to the work itself.
    property int head: 0
    Timer {
        interval: 1000 / 12
        repeat: true
        running: ring.running && ring.visible
        onTriggered: ring.head = (ring.head + 1) % ring.dots
    }
}
