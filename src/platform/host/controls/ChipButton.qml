import QtQuick
import Lamina

// A small choice among others beside it.
ChoiceButton {
    id: chip

    property bool selected: false

    implicitHeight: Tokens.touch.minimum
    implicitWidth: Math.max(Tokens.touch.minimum, label.implicitWidth + 2 * Tokens.space.l)
    chosen: selected
    Accessible.name: text

    background: Item {
        Rectangle {
            anchors.centerIn: parent
            width: parent.width
            height: 32
            radius: height / 2
            color: chip.down || chip.selected ? Tokens.palette.cell : chip.hovered ? Tokens.palette.panelRaised : "transparent"
            border.width: 1
            border.color: chip.selected ? Tokens.palette.accentText : Tokens.palette.hairline
            FocusRing {
                inside: true
                radius: parent.radius
                control: chip
            }
        }
    }
    contentItem: Item {
        StyledText {
            id: label
            anchors.centerIn: parent
            text: chip.text
            role: Tokens.type.caption
            strong: chip.selected
            wrapMode: Text.NoWrap
            color: chip.selected ? Tokens.palette.text : Tokens.palette.textSecondary
            Accessible.ignored: true
        }
    }
}
