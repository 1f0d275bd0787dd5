import QtQuick
import Lamina

// What an export has come to: the result as a print, what was saved, and the doors to the share sheet.
AppScreen {
    id: share

    // Stands, or is on its way in.
    property bool up: false

    name: controller.headline
    onBack: controller.backBtn()
    opacity: up ? 1 : 0
    Component.onCompleted: up = Qt.binding(() => shown)
    Behavior on opacity {
        NumberAnimation { duration: Theme.duration(Tokens.motion.fade); easing.type: Easing.OutCubic }
    }

    KeyCommand {
        command: "save"
        enabled: share.activeFocus
        onActivated: share.controller.moreAction()
    }

    Rectangle {
        anchors.fill: parent
        color: Tokens.palette.ground
    }

    WorkLayout {
        id: measures
        screen: share
        barHeight: bar.height
        // As large as there is room for between the words and the doors, the message under it.
        uprightSide: Math.min(share.width - 88, 480, panel.y - words.y - words.height - toast.height - 3 * Tokens.space.xl)
        uprightY: Math.round((words.y + words.height + toast.y - side) / 2)
        wideSide: Math.min(share.height - bar.height - toast.height - 3 * Tokens.space.xl, share.width - Tokens.bars.sidePanel - 96, 640)
        wideY: Math.round(bar.height + (share.height - bar.height - side) / 2 - 18)
    }

    SidePanel {
        visible: share.wide
    }

    TopBar {
        id: bar
        x: measures.barX
        width: measures.barWidth
        large: share.wide || share.tablet
        column: share.tablet ? share.tabletColumn : 0
        // A slim window has no room for words but these.
        title: share.slim ? share.name : ""
        onBack: share.controller.backBtn()
    }

    Item {
        id: words
        readonly property real inset: share.wide ? Tokens.space.xxl : share.lying ? Tokens.space.l : 0

        visible: !share.slim
        x: share.tablet ? (share.width - share.tabletColumn) / 2 : share.upright ? Tokens.space.xxl
         : (share.wide ? share.width - Tokens.bars.sidePanel : measures.columnX) + inset
        y: share.upright ? bar.height + Tokens.space.m : share.wide ? Tokens.space.xxl : share.lying ? bar.height : measures.y
        width: share.tablet ? share.tabletColumn : share.upright ? share.width - 2 * x
             : (share.wide ? Tokens.bars.sidePanel : measures.column) - 2 * inset
        height: share.slim ? 0 : file.y + file.height

        StyledText {
            id: headline
            width: parent.width
            text: share.name
            role: share.small ? Tokens.type.title : Tokens.type.display
            maximumLineCount: 1
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        StyledText {
            id: file
            y: headline.height
            width: Math.min(implicitWidth, parent.width - (size.visible && !share.small ? size.width + Tokens.space.s : 0))
            height: text === "" ? 0 : implicitHeight
            text: share.controller.fileName
            color: Tokens.palette.textSecondary
            // The beginning and the end of a name tell most.
            wrapMode: Text.NoWrap
            elide: Text.ElideMiddle
            Accessible.name: text
        }
        StyledText {
            id: size
            x: share.small ? 0 : file.width + Tokens.space.s
            y: file.y + (share.small ? file.height : 0)
            visible: text !== ""
            text: share.controller.fileSize
            color: Tokens.palette.textSecondary
            wrapMode: Text.NoWrap
            Accessible.name: text
        }
    }

    Print {
        readonly property real side: measures.side * (share.upright || share.wide ? 1 : 0.88)
        readonly property real aspect: share.controller.previewAspect

        width: Math.round(aspect > 1 ? side : side * aspect)
        height: Math.round(aspect > 1 ? side / aspect : side)
        x: Math.round(measures.x + (measures.side - width) / 2)
        y: Math.round(measures.y + (measures.side - height) / 2)
        picture: share.controller.shareImageView
        margin: 10
        turn: -2
        radius: Tokens.radius.photoPrint
        color: Tokens.palette.paper
        shadowColor: Tokens.palette.shadow
        shadow: Tokens.elevation.paper
        Accessible.role: Accessible.Graphic
        Accessible.name: qsTranslate("Lamina", "The finished picture")
    }

    Rectangle {
        id: panel
        visible: share.upright
        y: share.height - height
        width: parent.width
        height: doors.height + heading.height + 2 * Tokens.space.l + Tokens.space.xxl + Tokens.space.s
        color: Tokens.palette.panel
        Rectangle {
            width: parent.width
            height: 1
            color: Tokens.palette.hairline
        }
    }
    StyledText {
        id: heading
        visible: !share.small
        x: share.tablet ? doors.x : share.upright ? Tokens.space.xl : words.x
        y: share.upright ? panel.y + Tokens.space.l : doors.y - height - Tokens.space.m
        text: qsTranslate("Lamina", "Share it")
        role: Tokens.type.caption
        color: Tokens.palette.textSecondary
        Accessible.name: text
    }

    Grid {
        id: doors

        readonly property var list: [
            { name: qsTranslate("Lamina", "Chat"), icon: "door_chat", open: () => share.controller.whatsUpAction() },
            { name: qsTranslate("Lamina", "Feed"), icon: "door_feed", open: () => share.controller.instaAction() },
            { name: qsTranslate("Lamina", "Friends"), icon: "door_friends", open: () => share.controller.faceBookAction() },
            { name: qsTranslate("Lamina", "More"), icon: "more", open: () => share.controller.moreAction() }
        ]
        // Side by side where there is room for all, else in a square, or one over the other.
        readonly property real room: share.slim ? measures.column : share.tablet ? share.tabletColumn
                                 : share.upright ? share.width - 2 * Tokens.space.l : words.width
        readonly property real cell: columns === 1 ? room : Math.max(68, Math.min(85, room / columns))

        columns: share.slim ? 1 : room >= 4 * 68 || share.upright ? 4 : 2
        rowSpacing: share.slim ? Tokens.space.xs : Tokens.space.m
        x: share.upright ? Math.round((share.width - width) / 2) : share.slim ? measures.columnX : words.x
        y: share.upright ? heading.y + heading.height + Tokens.space.m
         : share.slim ? measures.y
         : share.height - height - (share.wide ? Tokens.space.xxl : Tokens.space.l)
        Accessible.role: Accessible.Grouping
        Accessible.name: heading.text

        Keys.onPressed: event => {
            const way = KeyTable.find("row", event.key, event.modifiers)
            event.accepted = way >= 0
            if (way < 0)
                return
            const at = doors.list.findIndex((_, i) => repeater.itemAt(i).activeFocus)
            const next = (at + (way % 2 === 0 ? -1 : 1) + repeater.count) % repeater.count
            repeater.itemAt(next).forceActiveFocus(Qt.TabFocusReason)
        }
        Repeater {
            id: repeater
            model: doors.list
            delegate: ShareDoor {
                required property var modelData
                required property int index
                width: doors.cell
                name: modelData.name
                iconName: modelData.icon
                named: !share.slim
                focus: index === 0
                onClicked: modelData.open()
            }
        }
    }

    Item {
        id: toast
        // Under the print, or over its foot where there is no room.
        readonly property real below: panel.y - words.y - words.height > 380 ? 54 : Tokens.space.m

        // In a small window nothing but the print makes way for it.
        x: share.small ? measures.x - Tokens.space.l : 0
        width: share.upright ? share.width : share.small ? measures.side + 2 * Tokens.space.l : measures.room
        height: message.height
        y: Math.round(share.upright ? panel.y - below - height
                    : share.wide ? Math.min(share.height - height - Tokens.space.m, measures.y + measures.side + Tokens.space.l)
                    : measures.y + measures.side - height - Tokens.space.m)
        opacity: share.controller.toastAlpha.value
        visible: opacity > 0
        MotionBehavior on opacity { motion: share.controller.toastAlpha }

        Toast {
            id: message
            anchors.horizontalCenter: parent.horizontalCenter
            sentence: true
            // Where nothing is to move it stands for its time, and is gone.
            timed: Theme.duration(1) === 0
            text: timed && share.controller.toastAlpha.value === 0 ? "" : share.controller.toastLbl
            onDone: share.controller.dismissToast()
        }
    }
}
