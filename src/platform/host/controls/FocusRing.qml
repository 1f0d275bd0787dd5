import QtQuick
import Lamina

// The mark of the keyboard's focus on a control, while the user works by keys: outside of what it goes round, a gap in
// the ground's colour and then white. Where there is no room outside it lies inside.
Item {
    id: ring

    // Whose focus it shows.
    required property Item control
    property real radius: 0
    property bool inside: false

    // The outer edges of the gap and of the ring.
    readonly property real gap: inside ? -Tokens.focus.ring : Tokens.focus.gap
    readonly property real outer: inside ? 0 : Tokens.focus.gap + Tokens.focus.ring

    anchors.fill: parent
    visible: control.activeFocus && Host.focusVisible

    Rectangle {
        anchors.fill: parent
        anchors.margins: -ring.gap
        radius: Math.max(0, parent.radius + ring.gap)
        color: "transparent"
        border.width: Tokens.focus.gap
        border.color: Tokens.palette.focusGap
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -ring.outer
        radius: parent.radius + ring.outer
        color: "transparent"
        border.width: Tokens.focus.ring
        border.color: Tokens.palette.focusRing
    }
}
