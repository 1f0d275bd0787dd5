import QtQuick
import Lamina

// Says what fingers can do here, until they have done it. As wide as its text, in as much room as there is.
Rectangle {
    id: pill

    property string text
    property bool shown: true
    property real room: parent ? parent.width : 0

    width: Math.min(Math.ceil(fit.widest) + 1 + 2 * Tokens.space.l, room)
    height: hint.height + Tokens.space.l
    radius: Math.min(height / 2, Tokens.radius.pill)
    color: Tokens.palette.field
    opacity: shown ? 1 : 0
    visible: opacity > 0
    Behavior on opacity {
        NumberAnimation { duration: Theme.duration(Tokens.motion.fade) }
    }
    LabelFit {
        id: fit
        texts: [pill.text]
        room: pill.room
        role: Tokens.type.caption
    }
    StyledText {
        id: hint
        anchors.centerIn: parent
        width: pill.width - 2 * Tokens.space.l
        text: pill.text
        Accessible.name: text
        role: Tokens.type.caption
        color: Tokens.palette.textSecondary
        horizontalAlignment: Text.AlignHCenter
        maximumLineCount: 2
    }
}
