import QtQuick
import Lamina

// Thirds and corners over a crop, each line on a dark one, so that they are seen on every photo. Only seen: fingers go
// through, and nothing of it is in the picture. The thirds leave a moment after the last touch.
Item {
    id: marks

    // A finger is down.
    property bool held: false
    readonly property int stay: 1000
    readonly property color dark: Qt.rgba(0, 0, 0, 0.45)

    // A touch, or what counts as one: the thirds are there for another moment.
    function wake() {
        thirds.opacity = 1
        if (!held)
            leaving.restart()
    }
    onHeldChanged: {
        wake()
        if (held)
            leaving.stop()
    }
    Timer {
        id: leaving
        interval: marks.stay
        onTriggered: thirds.opacity = 0
    }

    component Thirds: Item {
        id: lines
        required property color color
        // On every side of a line.
        property int margin: 0
        anchors.fill: parent
        Repeater {
            model: 4
            delegate: Rectangle {
                required property int index
                readonly property bool upright: index < 2
                readonly property real place: (index % 2 + 1) / 3
                x: upright ? Math.round(lines.width * place) - lines.margin : 0
                y: upright ? 0 : Math.round(lines.height * place) - lines.margin
                width: upright ? 1 + 2 * lines.margin : lines.width
                height: upright ? lines.height : 1 + 2 * lines.margin
                color: lines.color
            }
        }
    }
    // The top left one.
    component Corner: Item {
        id: corner
        required property color color
        property int margin: 0
        readonly property int thickness: 4
        anchors.fill: parent
        Rectangle {
            x: -corner.margin
            y: -corner.margin
            width: corner.width + 2 * corner.margin
            height: corner.thickness + 2 * corner.margin
            color: corner.color
        }
        Rectangle {
            x: -corner.margin
            y: corner.thickness + corner.margin
            width: corner.thickness + 2 * corner.margin
            height: corner.height - corner.thickness
            color: corner.color
        }
    }

    Item {
        id: thirds
        objectName: "thirds"
        anchors.fill: parent
        visible: opacity > 0
        Behavior on opacity {
            NumberAnimation { duration: Theme.duration(Tokens.motion.fade) }
        }
        Thirds {
            margin: 1
            color: marks.dark
        }
        Thirds {
            color: Qt.rgba(1, 1, 1, 0.7)
        }
    }
    Repeater {
        model: 4
        delegate: Item {
            required property int index
            x: index % 3 === 0 ? 0 : marks.width - width
            y: index < 2 ? 0 : marks.height - height
            width: 28
            height: 28
            rotation: 90 * index
            Corner {
                margin: 1
                color: marks.dark
            }
            Corner {
                color: "white"
            }
        }
    }
}
