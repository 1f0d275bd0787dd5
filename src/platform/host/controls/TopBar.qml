import QtQuick
import Lamina

// The bar over a screen: the way back, a title, and what stands at its right.
Item {
    id: bar

    property string title
    property string backName: qsTranslate("Lamina", "Back")
    property string backIcon: "back"
    // What keys do as it does, in the KeyTable.
    property string backCommand: "back"
    // The title stands in the bar's middle, as between a button and its opposite, and not beside the way back.
    property bool centered: false
    // Of a large window: a little higher.
    property bool large: false
    // The column whose edges the bar's glyphs end on; 0: they end near the bar's own.
    property real column: 0
    default property alias content: right.data
    signal back()

    readonly property real margin: column > 0 ? (width - column) / 2 : 0
    // From the edge of the button to that of its glyph.
    readonly property real glyphInset: 17
    // What there is for the content.
    readonly property real room: width - backButton.x - backButton.width - right.anchors.rightMargin

    height: large ? Tokens.bars.topWide : Tokens.bars.top
    // The names of its buttons come out under it, over the screen.
    z: 1

    IconButton {
        id: backButton
        anchors.left: parent.left
        anchors.leftMargin: bar.column > 0 ? bar.margin - bar.glyphInset : bar.large ? 11 : Tokens.space.xs
        anchors.verticalCenter: parent.verticalCenter
        iconName: bar.backIcon
        name: bar.backName
        command: bar.backCommand
        onClicked: bar.back()
    }
    StyledText {
        readonly property real before: backButton.x + backButton.width + Tokens.space.xs
        readonly property real after: right.width + right.anchors.rightMargin

        leftPadding: bar.centered ? Math.max(0, after - before) : 0
        rightPadding: bar.centered ? Math.max(0, before - after) : 0
        horizontalAlignment: bar.centered ? Text.AlignHCenter : Text.AlignLeft
        anchors.left: backButton.right
        anchors.leftMargin: Tokens.space.xs
        anchors.right: right.left
        anchors.verticalCenter: parent.verticalCenter
        text: bar.title
        strong: true
        wrapMode: Text.NoWrap
        Accessible.role: Accessible.Heading
        Accessible.name: text
        Accessible.ignored: text === ""
    }
    Row {
        id: right
        anchors.right: parent.right
        anchors.rightMargin: bar.column > 0 ? bar.margin : Tokens.space.m
        anchors.verticalCenter: parent.verticalCenter
        spacing: 0
    }
}
