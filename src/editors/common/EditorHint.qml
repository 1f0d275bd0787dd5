import QtQuick
import Lamina

// What a wide window's side panel says while no tool has opened anything.
EditorPanel {
    id: panel

    required property string text

    name: ""
    wideOnly: true

    ScrollPage {
        anchors.fill: parent
        contentHeight: hint.height
        clip: interactive
        reading: true
        StyledText {
            id: hint
            width: parent.width
            text: panel.text
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            Accessible.name: text
        }
    }
}
