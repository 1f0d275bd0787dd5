import QtQuick
import Lamina

// What stands where there are no photos: why, and what can be done.
Column {
    id: message

    required property var theme
    property string title
    property string line
    // What can be done; empty: nothing.
    property string action
    signal acted()

    spacing: Tokens.space.s

    StyledText {
        width: parent.width
        visible: text !== ""
        text: message.title
        role: Tokens.type.title
        color: Tokens.palette.overPaper
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    StyledText {
        // A line of some sixty signs is read with ease.
        width: Math.min(parent.width, 32 * font.pixelSize)
        anchors.horizontalCenter: parent.horizontalCenter
        visible: text !== ""
        text: message.line
        role: Tokens.type.caption
        color: Tokens.palette.overPaperSecondary
        horizontalAlignment: Text.AlignHCenter
        Accessible.name: text
    }
    Item {
        width: 1
        height: Tokens.space.xs
        visible: act.visible
    }
    PickerButton {
        id: act
        anchors.horizontalCenter: parent.horizontalCenter
        visible: message.action !== ""
        theme: message.theme
        filled: true
        strong: true
        text: message.action
        tint: message.theme.orderLabelTextColor
        onClicked: message.acted()
    }
}
