import QtQuick
import QtQuick.Templates as T
import Lamina

// A recommendation: one picture on paper, whole, that leads to a page of the web, and the way out.
AppScreen {
    id: screen

    readonly property string host: controller.host
    // In a large window words and close stay with the paper; else they keep to the window's edges.
    readonly property bool gathered: wide || tablet
    readonly property real side: lying ? Math.min(240, Math.round(width / 3)) : 0
    readonly property real edge: lying ? Tokens.space.m : gathered ? Tokens.layout.tabletMargin : Tokens.space.l

    name: qsTranslate("Lamina", "Recommended")
    onBack: controller.cancelClick()

    Rectangle {
        anchors.fill: parent
        color: Tokens.palette.ground
    }

    // What there is for the paper.
    QtObject {
        id: room
        readonly property real x: screen.edge
        readonly property real y: screen.lying ? screen.edge : head.height
        readonly property real width: screen.width - screen.side - 2 * screen.edge
        readonly property real height: screen.height - y - (screen.lying ? screen.edge : foot.height + Tokens.space.xl + screen.edge)
    }

    Item {
        id: head
        x: screen.lying ? screen.width - screen.side : screen.gathered ? group.x : 0
        y: screen.gathered ? group.y : 0
        width: screen.lying ? screen.side : screen.gathered ? group.width : screen.width
        height: screen.gathered ? Tokens.bars.topWide : Tokens.bars.top

        StyledText {
            anchors.left: parent.left
            anchors.leftMargin: screen.gathered ? 0 : screen.lying ? Tokens.space.s : Tokens.space.l
            anchors.right: close.left
            anchors.verticalCenter: parent.verticalCenter
            text: screen.name
            strong: true
            wrapMode: Text.NoWrap
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        // First for the keyboard, so that a key pressed in haste leads out and not away.
        IconButton {
            id: close
            anchors.right: parent.right
            anchors.rightMargin: screen.gathered ? 0 : Tokens.space.s
            anchors.verticalCenter: parent.verticalCenter
            focus: true
            iconName: "close"
            name: qsTranslate("Lamina", "Close")
            command: "back"
            onClicked: screen.controller.cancelClick()
        }
    }

    // Paper and words of a large window, together in its middle.
    QtObject {
        id: group
        readonly property real width: Math.max(paper.width, Math.min(320, room.width))
        readonly property real x: Math.round((screen.width - width) / 2)
        readonly property real y: Math.round((screen.height - head.height - paper.height - foot.height - Tokens.space.xl) / 2)
    }

    T.Button {
        id: paper

        readonly property real margin: 10
        readonly property size picture: screen.controller.pictureSize
        // As large as there is room for; small pictures are not blown up to that.
        readonly property real scaling: Math.max(0, Math.min(
            (Math.min(room.width, 820) - 2 * margin) / Math.max(1, picture.width),
            (Math.min(room.height, 820) - 2 * margin) / Math.max(1, picture.height),
            Math.max(1, 280 / Math.max(1, picture.width, picture.height))))
        // However slim the picture is, a finger hits the paper.
        readonly property real least: Math.max(0, Math.min(96, room.height - 2 * margin))

        width: Math.round(Math.max(least, picture.width * scaling)) + 2 * margin
        height: Math.round(Math.max(least, picture.height * scaling)) + 2 * margin
        x: Math.round(room.x + (room.width - width) / 2)
        y: screen.gathered ? head.y + head.height : Math.round(room.y + (room.height - height) / 2)
        hoverEnabled: true
        focusPolicy: Qt.StrongFocus
        Accessible.name: screen.host === "" ? qsTranslate("Lamina", "Recommended")
                                            : qsTranslate("Lamina", "Recommended: opens %1 in the browser").arg(screen.host)
        Accessible.onPressAction: clicked()
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        onClicked: screen.controller.taponImageView()

        background: Paper {
            Picture {
                anchors.fill: parent
                anchors.margins: paper.margin
                picture: screen.controller.interstitialImageView
                cutOut: true
                opacity: paper.down ? 0.8 : 1
            }
            FocusRing {
                control: paper
            }
        }
        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }

    // Where a tap leads, before it is made.
    Item {
        id: foot
        x: screen.lying ? head.x + Tokens.space.s : screen.gathered ? group.x : Tokens.space.l
        y: screen.lying ? head.y + head.height + Tokens.space.s : paper.y + paper.height + Tokens.space.xl
        width: screen.gathered ? group.width : screen.width - x - Tokens.space.l
        height: words.height
        visible: screen.host !== ""

        Icon {
            id: mark
            size: Tokens.icon.live
            name: "open_with"
            opacity: 0.6
        }
        StyledText {
            id: words
            anchors.left: mark.right
            anchors.leftMargin: Tokens.space.s
            anchors.right: parent.right
            text: qsTranslate("Lamina", "Opens %1 in the browser").arg(screen.host)
            role: Tokens.type.caption
            // A name without a place to break it is broken where the line ends.
            wrapMode: Text.Wrap
            maximumLineCount: screen.lying ? 6 : 3
            color: Tokens.palette.textSecondary
            Accessible.name: text
        }
    }
}
