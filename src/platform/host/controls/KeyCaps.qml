import QtQuick
import Lamina

// The keys of a command, drawn as they look on a keyboard.
Row {
    id: caps

    // Of the KeyTable.
    property string command

    spacing: Tokens.space.xs

    Repeater {
        model: KeyTable.caps(caps.command)
        delegate: Rectangle {
            required property var modelData
            width: modelData.cap ? Math.max(26, letters.implicitWidth + Tokens.space.l) : letters.implicitWidth
            height: Math.max(24, letters.implicitHeight + Tokens.space.s)
            radius: 7
            color: modelData.cap ? Tokens.palette.field : "transparent"
            border.width: modelData.cap ? 1 : 0
            border.color: Tokens.palette.hairline
            StyledText {
                id: letters
                anchors.centerIn: parent
                text: parent.modelData.text
                role: Tokens.type.label
                font.weight: Tokens.type.label.weightActive
                color: parent.modelData.cap ? Tokens.palette.text : Tokens.palette.textSecondary
                wrapMode: Text.NoWrap
                Accessible.ignored: true
            }
        }
    }
}
