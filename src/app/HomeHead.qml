import QtQuick
import Lamina

// The application's sign and name over the home screen, and what stands at the right of them.
Item {
    id: head

    property real iconSize: 48
    property real spacing: 14
    property var role: Tokens.type.display
    property bool withLine: false
    default property alias content: right.data

    implicitHeight: Math.max(iconSize, words.height, right.height)

    Icon {
        id: sign
        name: "app-scalable"
        size: head.iconSize
        anchors.verticalCenter: parent.verticalCenter
    }
    Column {
        id: words
        anchors.left: sign.right
        anchors.leftMargin: head.spacing
        anchors.right: right.left
        anchors.verticalCenter: parent.verticalCenter
        StyledText {
            width: parent.width
            text: "Lamina"
            role: head.role
            wrapMode: Text.NoWrap
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        StyledText {
            visible: head.withLine
            width: parent.width
            text: qsTranslate("Lamina", "Put photos together.")
            color: Tokens.palette.textSecondary
            wrapMode: Text.NoWrap
        }
    }
    Row {
        id: right
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
    }
}
