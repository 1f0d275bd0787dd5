import QtQuick
import Lamina

// The bar over a screen: the way back, a title, and what stands at its right.
Item {
    id: bar

    property string title
    property string backName: qsTranslate("Lamina", "Back")
    property bool wide: false
    default property alias content: right.data
    signal back()

    height: wide ? Tokens.bars.topWide : Tokens.bars.top
    // The names of its buttons come out under it, over the screen.
    z: 1

    IconButton {
        id: backButton
        anchors.left: parent.left
        anchors.leftMargin: bar.wide ? 11 : Tokens.space.xs
        anchors.verticalCenter: parent.verticalCenter
        iconName: "back"
        name: bar.backName
        command: "back"
        onClicked: bar.back()
    }
    StyledText {
        anchors.left: backButton.right
        anchors.leftMargin: Tokens.space.xs
        anchors.right: right.left
        anchors.verticalCenter: parent.verticalCenter
        text: bar.title
        strong: true
        maximumLineCount: 1
        Accessible.role: Accessible.Heading
        Accessible.name: text
        Accessible.ignored: text === ""
    }
    Row {
        id: right
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.m
        anchors.verticalCenter: parent.verticalCenter
        spacing: 0
    }
}
