import QtQuick
import Lamina

// The mark of the keyboard's focus, outside of what it goes round: a gap in the ground's colour, then white.
Item {
    property real radius: 0
    property bool shown: false

    anchors.fill: parent
    visible: shown

    Rectangle {
        anchors.fill: parent
        anchors.margins: -Tokens.focus.gap
        radius: parent.radius + Tokens.focus.gap
        color: "transparent"
        border.width: Tokens.focus.gap
        border.color: Tokens.palette.focusGap
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -Tokens.focus.gap - Tokens.focus.ring
        radius: parent.radius + Tokens.focus.gap + Tokens.focus.ring
        color: "transparent"
        border.width: Tokens.focus.ring
        border.color: Tokens.palette.focusRing
    }
}
