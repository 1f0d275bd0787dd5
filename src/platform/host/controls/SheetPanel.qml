import QtQuick
import Lamina

// A sheet over the work: from the foot of an upright window, reaching below it so that only its upper corners are round; a
// card in the middle of the others.
Item {
    id: sheet

    property bool card: false
    property string title
    property string closeName: qsTranslate("Lamina", "Close")
    default property alias content: holder.data
    // Height of what it holds.
    required property real contentHeight
    signal closed()

    readonly property real head: 56
    readonly property real cardWidth: Math.min(480, width - 2 * Tokens.space.l)
    readonly property real panelHeight: Math.min(head + contentHeight + Tokens.space.l, height - Tokens.space.xxl)

    anchors.fill: parent

    Rectangle {
        id: panel
        width: sheet.card ? sheet.cardWidth : sheet.width
        height: sheet.panelHeight + (sheet.card ? 0 : radius)
        x: (sheet.width - width) / 2
        y: sheet.card ? (sheet.height - height) / 2 : sheet.height - sheet.panelHeight + (1 - sheet.risen) * 40
        opacity: sheet.risen
        radius: sheet.card ? Tokens.radius.exporterSheet : Tokens.radius.chooserSheet
        color: Tokens.palette.panel
        border.width: 1
        border.color: Tokens.palette.hairline

        MouseArea { // what is tapped here is not tapped through
            anchors.fill: parent
        }
        StyledText {
            anchors.left: parent.left
            anchors.leftMargin: Tokens.space.sheetMargin
            anchors.right: close.left
            anchors.verticalCenter: close.verticalCenter
            text: sheet.title
            role: Tokens.type.title
            maximumLineCount: 1
            Accessible.role: Accessible.Heading
        }
        IconButton {
            id: close
            anchors.right: parent.right
            anchors.rightMargin: Tokens.space.s
            y: 8
            iconName: "YMSIconCancel"
            name: sheet.closeName
            onClicked: sheet.closed()
        }
        Item {
            id: holder
            y: sheet.head
            width: parent.width
            height: sheet.panelHeight - sheet.head - Tokens.space.l
        }
    }

    property real risen: 0
    Component.onCompleted: risen = 1
    Behavior on risen {
        NumberAnimation { duration: Theme.duration(Tokens.motion.sheet); easing.type: Easing.OutCubic }
    }
}
