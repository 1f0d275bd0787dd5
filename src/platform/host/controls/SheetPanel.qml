import QtQuick
import Lamina

// A sheet over the work. From the foot of an upright window it reaches below it, so that only its upper corners are
// round, and is closed by a pull downwards; in the others it is a card in the middle.
Item {
    id: sheet

    property bool card: false
    // False: it goes down again.
    property bool shown: true
    property string iconName
    property string title
    property string subtitle
    property string closeName: qsTranslate("Lamina", "Close")
    // Off: there is no way out but an answer.
    property bool closable: true
    property real cornerRadius: card ? Tokens.radius.exporterSheet : Tokens.radius.chooserSheet
    default property alias content: holder.data
    // Height of what it holds.
    required property real contentHeight
    // What stays at its foot while the rest is scrolled, and its height.
    property alias foot: footHolder.data
    property real footHeight: 0
    // Docked it is at least this high.
    property real leastHeight: 0
    // A finger that moves what it holds up and down can pull it by its head alone.
    property bool scrolls: false
    property bool pullable: true
    // Knows how far a pull takes it and when that closes it, a SheetViewController; null: the sheet itself does.
    property var puller: null
    signal closed()

    readonly property real head: (card ? 0 : 10) + headRow
    readonly property real headRow: Math.max(56, words.height + (subtitle === "" ? Tokens.space.m : Tokens.space.xxl + Tokens.space.s))
    readonly property real below: footHeight > 0 ? Tokens.space.l + footHeight + Tokens.space.sheetMargin : Tokens.space.l
    readonly property real cardWidth: Math.min(480, width - 2 * Tokens.space.l)
    readonly property real panelHeight: Math.min(Math.max(head + contentHeight + below, card ? 0 : leastHeight), height - Tokens.space.xxl)

    // Stands, or is on its way up.
    property bool up: false
    property real risen: up ? 1 : 0
    // How far it was pulled down.
    property real pulled: puller ? puller.sheetTranslation.value : 0

    anchors.fill: parent
    Component.onCompleted: up = Qt.binding(() => shown)

    Behavior on risen {
        NumberAnimation { duration: Theme.duration(Tokens.motion.sheet); easing.type: sheet.up ? Easing.OutCubic : Easing.InCubic }
    }
    Behavior on pulled {
        enabled: !pull.active
        NumberAnimation { duration: Theme.duration(Tokens.motion.sheet); easing.type: Easing.OutCubic }
    }

    function pullBy(by) {
        if (puller)
            puller.handlePanGesture(2, by)
        else
            pulled = Math.max(0, by)
    }
    function letGo(by) {
        if (puller)
            puller.handlePanGesture(3, by)
        else if (closable && by > height / 3.5)
            closed()
        else
            pulled = 0
    }

    Rectangle {
        id: panel
        width: sheet.card ? sheet.cardWidth : sheet.width
        height: sheet.panelHeight + (sheet.card ? 0 : radius)
        x: (sheet.width - width) / 2
        y: sheet.card ? (sheet.height - height) / 2
                      : sheet.height - sheet.panelHeight + (1 - sheet.risen) * sheet.panelHeight + sheet.pulled
        opacity: sheet.card ? sheet.risen : 1
        radius: sheet.cornerRadius
        color: Tokens.palette.panel
        border.width: Tokens.elevation.sheetEdge.width
        border.color: Tokens.elevation.sheetEdge.color

        MouseArea { // what is tapped here is not tapped through
            anchors.fill: parent
            onWheel: wheel => wheel.accepted = true
        }
        Item {
            width: parent.width
            height: sheet.scrolls ? sheet.head : parent.height
            DragHandler {
                id: pull

                property real by: 0

                target: null
                enabled: !sheet.card && sheet.pullable
                xAxis.enabled: false
                onCentroidChanged: {
                    if (!active)
                        return
                    by = centroid.scenePosition.y - centroid.scenePressPosition.y
                    sheet.pullBy(by)
                }
                // A finger that is taken away from it closes nothing.
                onCanceled: by = 0
                onActiveChanged: if (!active) sheet.letGo(by)
            }
        }
        Item {
            width: parent.width
            height: sheet.head
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
            height: sheet.panelHeight - sheet.head - sheet.below
        }
        Item {
            id: footHolder
            x: Tokens.space.sheetMargin
            y: sheet.panelHeight - height - Tokens.space.sheetMargin
            width: parent.width - 2 * x
            height: sheet.footHeight
            visible: height > 0
        }
    }
}
