import QtQuick
import Lamina

// Says what fingers can do here, until they have done it.
Rectangle {
    id: pill

    property string text
    property bool shown: true

    implicitWidth: hint.implicitWidth + 2 * Tokens.space.l
    implicitHeight: hint.implicitHeight + Tokens.space.l
    radius: Math.min(height / 2, Tokens.radius.pill)
    color: Tokens.palette.field
    opacity: shown ? 1 : 0
    visible: opacity > 0
    Behavior on opacity {
        NumberAnimation { duration: Theme.duration(Tokens.motion.fade) }
    }
    StyledText {
        id: hint
        anchors.centerIn: parent
        width: Math.min(implicitWidth, pill.width - 2 * Tokens.space.l)
        text: pill.text
        Accessible.name: text
        role: Tokens.type.caption
        color: Tokens.palette.textSecondary
        horizontalAlignment: Text.AlignHCenter
    }
}
