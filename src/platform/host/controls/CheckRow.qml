import QtQuick
import Lamina

// A tick and what it says; the whole row is pressed.
ChoiceButton {
    id: row

    // What it leads to, under what it says.
    property string info

    width: parent ? parent.width : 0
    implicitHeight: Math.max(Tokens.touch.checkRow, words.height + Tokens.space.m)
    Accessible.name: text
    Accessible.description: info

    background: Rectangle {
        color: row.down ? Tokens.palette.cell : row.hovered ? Tokens.palette.panelRaised : "transparent"
        FocusRing {
            anchors.margins: 2
            inside: true
            control: row
            radius: Tokens.radius.field
        }
    }
    contentItem: Item {
        Icon {
            id: mark
            x: Tokens.space.sheetMargin - 2 // its square begins where the fields do
            anchors.verticalCenter: parent.verticalCenter
            name: row.chosen ? "ic_checkbox1" : "ic_checkbox"
        }
        Column {
            id: words
            anchors.left: mark.right
            anchors.leftMargin: 14
            anchors.right: parent.right
            anchors.rightMargin: Tokens.space.sheetMargin
            anchors.verticalCenter: parent.verticalCenter
            StyledText {
                width: parent.width
                text: row.text
                Accessible.ignored: true
            }
            StyledText {
                width: parent.width
                visible: text !== ""
                text: row.info
                role: Tokens.type.caption
                color: Tokens.palette.textSecondary
                Accessible.ignored: true
            }
        }
    }
}
