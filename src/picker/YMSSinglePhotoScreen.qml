import QtQuick
import Lamina

// One photo of the picker, large, with its name and when it was taken; or the photo alone on black.
AppScreen {
    id: screen

    // YMSSinglePhotoViewController.PresentationStyle
    readonly property bool bars: controller.presentationStyle === 0
    readonly property var place: [width, height, bar.height, words.height]
    readonly property string hint: !controller.hasNeighbours ? ""
        : Host.mouseAtHand ? qsTranslate("Lamina", "The arrow keys go to the next photo")
                           : qsTranslate("Lamina", "Swipe for the next photo")

    name: controller.photoName
    onBack: controller.cancel()
    onPlaceChanged: controller.placeViews(width, height, bar.height, words.height)

    Rectangle {
        anchors.fill: parent
        color: Tokens.palette.overPaper
    }
    Rectangle {
        anchors.fill: parent
        color: Tokens.palette.paper
        opacity: screen.controller.whiteAlpha.value
        MotionBehavior on opacity { motion: screen.controller.whiteAlpha }
    }

    ViewCanvas {
        id: canvas

        readonly property real zoomStep: 1.25

        // By the place of a key in the table; -1 is none. A photo that is seen from near is moved about instead.
        function go(way, points) {
            const ways = [[-1, 0], [1, 0], [0, -1], [0, 1]]
            if (way >= 0 && screen.controller.zoomScale > 1)
                screen.controller.nudge(points * ways[way][0], points * ways[way][1])
            else if (way >= 0)
                screen.controller.showNeighbour(way % 2 === 0 ? -1 : 1)
            return way >= 0
        }

        anchors.fill: parent
        controller: screen.controller
        focus: true
        activeFocusOnTab: true
        Accessible.role: Accessible.Graphic
        Accessible.name: screen.controller.photoName
        Accessible.description: [screen.controller.photoFacts, screen.controller.failure,
            screen.controller.hasNeighbours ? qsTranslate("Lamina", "The arrow keys go to the next photo") : ""]
            .filter(text => text !== "").join(". ")
        Accessible.focusable: true
        onDoubleTapped: (x, y) => screen.controller.toggleZoom(x, y)

        Keys.onPressed: event => {
            const pressed = command => KeyTable.find(command, event.key, event.modifiers)
            const page = pressed("page")
            const zoom = pressed("zoom")
            const use = pressed("use") >= 0
            event.accepted = page >= 0 || zoom >= 0 || use || go(pressed("move"), 20) || go(pressed("moveFar"), 60)
            if (page >= 0)
                screen.controller.showNeighbour(page === 0 ? -1 : 1)
            else if (zoom >= 0)
                screen.controller.zoomBy(zoom === 1 ? 1 / zoomStep : zoomStep)
            else if (use)
                screen.controller.selectCurrentPhoto()
        }
    }

    Item {
        id: middle
        // Where the photo is when it is there.
        y: screen.bars ? bar.height : 0
        width: parent.width
        height: parent.height - y - (screen.bars ? words.height : 0)
        FocusRing {
            inside: true
            visible: control.activeFocus && Host.focusVisible && screen.bars
            control: canvas
        }

        Column {
            anchors.centerIn: parent
            width: Math.min(parent.width - 2 * Tokens.space.l, Tokens.layout.columnMost)
            visible: screen.controller.unreadable
            spacing: Tokens.space.m
            Rectangle {
                readonly property real most: middle.height - cause.height - 4 * Tokens.space.m
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.max(Tokens.touch.minimum, Math.min(160, most))
                height: width
                color: Tokens.palette.field
                Icon {
                    anchors.centerIn: parent
                    name: "Gallery"
                    opacity: Tokens.opacity.disabled
                }
            }
            StyledText {
                id: cause
                width: parent.width
                text: screen.controller.failure
                role: Tokens.type.caption
                color: screen.bars ? Tokens.palette.overPaperSecondary : Tokens.palette.textSecondary
                horizontalAlignment: Text.AlignHCenter
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
                Accessible.ignored: text === ""
            }
        }
        BusyRing {
            anchors.centerIn: parent
            visible: screen.controller.waiting && patience.over
            running: visible
            color: screen.bars ? Tokens.palette.overPaperHud : Tokens.palette.text
        }
        Timer {
            id: patience
            // What is there soon shows nothing before.
            property bool over: false
            interval: 150
            running: screen.controller.waiting
            onRunningChanged: over = false
            onTriggered: over = true
        }
    }

    PickerBar {
        id: bar
        width: parent.width
        opacity: screen.controller.barAlpha.value
        visible: opacity > 0
        enabled: screen.bars
        theme: screen.controller.theme
        title: screen.controller.numberText
        leftIcon: "YMSIconCancel"
        leftName: qsTranslate("Lamina", "Cancel")
        rightText: screen.controller.rightBarButtonItem.title
        rightIcon: "plus"
        rightEnabled: screen.controller.rightBarButtonItem.enabled
        rightCommand: "use"
        onLeave: screen.controller.cancel()
        onAct: screen.controller.rightBarButtonItem.press()
        MotionBehavior on opacity { motion: screen.controller.barAlpha }
    }

    Item {
        id: words

        readonly property real inset: Tokens.space.l
        // One under the other where there is height for it, else all on one line.
        readonly property bool line: screen.low
        readonly property bool aside: !screen.upright || screen.tablet
        readonly property real inner: width - 2 * inset

        y: parent.height - height
        width: parent.width
        height: (aside ? Math.max(told.height, hint.visible ? hint.height : 0) + Tokens.space.m
               : hint.visible ? hint.y + hint.height + Tokens.space.xxl : told.height + Tokens.space.xxl) + told.y
        opacity: screen.controller.barAlpha.value
        visible: opacity > 0
        MotionBehavior on opacity { motion: screen.controller.barAlpha }

        Column {
            id: told
            x: words.inset
            y: words.aside ? Tokens.space.s : Tokens.space.xs
            width: words.aside && hint.visible ? words.inner - hint.width - Tokens.space.xl : words.inner
            StyledText {
                width: parent.width
                visible: !words.line
                text: screen.controller.photoName
                color: Tokens.palette.overPaper
                wrapMode: Text.NoWrap
                elide: Text.ElideMiddle
                Accessible.name: text
            }
            StyledText {
                width: parent.width
                visible: text !== ""
                text: words.line ? [screen.controller.photoName, screen.controller.photoFacts].filter(text => text !== "").join(", ")
                                 : screen.controller.photoFacts
                role: Tokens.type.caption
                color: Tokens.palette.overPaperSecondary
                maximumLineCount: words.line ? 3 : 2
                Accessible.name: text
            }
        }
        Rectangle {
            visible: hint.visible && !words.aside
            x: words.inset
            y: told.y + told.height + Tokens.space.xxl
            width: words.inner
            height: 1
            color: Tokens.palette.paperHairline
        }
        StyledText {
            id: hint
            // A low window has no room for it beside the rest.
            visible: text !== "" && (!words.line || words.inner > 2 * width + Tokens.space.xl)
            x: words.aside ? words.width - words.inset - width : words.inset
            y: words.aside ? told.y + told.height - height : told.y + told.height + Tokens.space.xxl + Tokens.space.m
            width: words.aside ? Math.min(implicitWidth, words.inner / 2) : words.inner
            text: screen.hint
            role: Tokens.type.caption
            color: Tokens.palette.overPaperSecondary
            Accessible.ignored: true
        }
    }
}
