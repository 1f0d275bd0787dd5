import QtQuick
import Lamina

// Thirds and corners over a crop. Only seen: fingers go through, and nothing of it is in the picture.
Item {
    id: marks

    readonly property color line: Qt.rgba(1, 1, 1, 0.45)

    Repeater {
        model: 2
        delegate: Rectangle {
            required property int index
            x: Math.round(marks.width * (index + 1) / 3)
            width: 1
            height: marks.height
            color: marks.line
        }
    }
    Repeater {
        model: 2
        delegate: Rectangle {
            required property int index
            y: Math.round(marks.height * (index + 1) / 3)
            width: marks.width
            height: 1
            color: marks.line
        }
    }
    Repeater {
        model: 4
        delegate: Item {
            required property int index
            readonly property bool atRight: index % 2 === 1
            readonly property bool atBottom: index > 1
            x: atRight ? marks.width - width : 0
            y: atBottom ? marks.height - height : 0
            width: 28
            height: 28
            Rectangle {
                y: parent.atBottom ? parent.height - height : 0
                width: parent.width
                height: 4
            }
            Rectangle {
                x: parent.atRight ? parent.width - width : 0
                width: 4
                height: parent.height
            }
        }
    }
}
