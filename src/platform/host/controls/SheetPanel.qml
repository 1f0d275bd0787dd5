import QtQuick
import Lamina

// A sheet over the work. From the foot of an upright window it reaches below it, so that only its upper corners are
// round, and is closed by a pull downwards; in the others it is a card in the middle.
Item {
    id: sheet

    property bool card: false
    property string iconName
    property string title
    property string subtitle
    property string closeName: qsTranslate("Lamina", "Close")
    // Off: there is no way out but an answer.
    property bool closable: true
    default property alias content: holder.data
    // Height of what it holds.
    required property real contentHeight
    signal closed()

    readonly property real head: (card ? 0 : 10) + headRow
    readonly property real headRow: Math.max(56, words.height + (subtitle === "" ? Tokens.space.m : Tokens.space.xxl + Tokens.space.s))
    readonly property real cardWidth: Math.min(480, width - 2 * Tokens.space.l)
    readonly property real panelHeight: Math.min(head + contentHeight + Tokens.space.l, height - Tokens.space.xxl)

    // How far a finger has pulled it down.
    property real pulled: 0
    property real risen: 0

    anchors.fill: parent
    Component.onCompleted: risen = 1

    Behavior on risen {
        NumberAnimation { duration: Theme.duration(Tokens.motion.sheet); easing.type: Easing.OutCubic }
    }
    NumberAnimation {
        id: springBack
        target: sheet
        property: "pulled"
        to: 0
        duration: Theme.duration(Tokens.motion.sheet)
        easing.type: Easing.OutCubic
    }

    Rectangle {
        id: panel
        width: sheet.card ? sheet.cardWidth : sheet.width
        height: sheet.panelHeight + (sheet.card ? 0 : radius)
        x: (sheet.width - width) / 2
        y: sheet.card ? (sheet.height - height) / 2
                      : sheet.height - sheet.panelHeight + (1 - sheet.risen) * sheet.panelHeight + sheet.pulled
        opacity: sheet.card ? sheet.risen : 1
        radius: sheet.card ? Tokens.radius.exporterSheet : Tokens.radius.chooserSheet
        color: Tokens.palette.panel
        border.width: Tokens.elevation.sheetEdge.width
        border.color: Tokens.elevation.sheetEdge.color

        MouseArea { // what is tapped here is not tapped through
            anchors.fill: parent
        }
        Item {
            width: parent.width
            height: sheet.head
            DragHandler {
                id: pull
                target: null
                enabled: !sheet.card
                xAxis.enabled: false
                onCentroidChanged: {
                    if (active)
                        sheet.pulled = Math.max(0, centroid.scenePosition.y - centroid.scenePressPosition.y)
                }
                onActiveChanged: {
                    if (active)
                        springBack.stop()
                    else if (sheet.closable && sheet.pulled > sheet.height / 3.5)
                        sheet.closed()
                    else
                        springBack.start()
                }
            }
            Rectangle {
                visible: !sheet.card
                anchors.horizontalCenter: parent.horizontalCenter
                y: 10
                width: 40
                height: 6
                radius: 3
                color: Tokens.palette.textDisabled
            }
            Icon {
                id: sign
                visible: sheet.iconName !== ""
                anchors.left: parent.left
                anchors.leftMargin: visible ? Tokens.space.sheetMargin : 0
                anchors.verticalCenter: close.verticalCenter
                name: sheet.iconName
                size: visible ? 48 : 0
            }
            Column {
                id: words
                anchors.left: sign.right
                anchors.leftMargin: sign.visible ? Tokens.space.l : Tokens.space.sheetMargin
                anchors.right: close.left
                anchors.verticalCenter: close.verticalCenter
                StyledText {
                    width: parent.width
                    text: sheet.title
                    role: Tokens.type.title
                    maximumLineCount: 1
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                StyledText {
                    visible: text !== ""
                    width: parent.width
                    text: sheet.subtitle
                    role: Tokens.type.caption
                    color: Tokens.palette.textSecondary
                    maximumLineCount: 1
                    Accessible.name: text
                }
            }
            IconButton {
                id: close
                visible: sheet.closable
                anchors.right: parent.right
                anchors.rightMargin: Tokens.space.s
                anchors.bottom: parent.bottom
                anchors.bottomMargin: (sheet.headRow - height) / 2
                iconName: "YMSIconCancel"
                name: sheet.closeName
                command: "back"
                onClicked: sheet.closed()
            }
        }
        Item {
            id: holder
            y: sheet.head
            width: parent.width
            height: sheet.panelHeight - sheet.head - Tokens.space.l
        }
    }
}
