import QtQuick
import Lamina

// A camera or a movie through a look and effects, as it goes.
AppScreen {
    id: live

    // A small window's tools come first: what lies on them waits to be asked for.
    property bool asked: false
    readonly property string panel: wide || (small && !asked) ? "" : controller.panel
    readonly property bool movie: controller.source === "movie"
    readonly property bool usable: !controller.stopped
    readonly property bool windowShown: Window.visibility !== Window.Hidden && Window.visibility !== Window.Minimized

    // Wide: the picture has its own shape, as large as fits.
    readonly property size box: Qt.size(width - Tokens.bars.sidePanel - 96, height - 200)
    readonly property real aspect: controller.aspect > 0 ? controller.aspect : 4 / 3
    readonly property real pictureWidth: wide ? Math.round(Math.min(box.width, box.height * aspect)) : measures.side
    readonly property real pictureHeight: wide ? Math.round(Math.min(box.height, box.width / aspect)) : measures.side

    function open(panel) {
        asked = true
        controller.panel = panel
    }
    function focusTools() {
        (small ? tray : tools).takeFocus()
    }

    name: controller.title
    onBack: {
        if (small && asked)
            asked = false
        else
            controller.back()
    }
    onWindowShownChanged: controller.setWindowShown(windowShown)
    Component.onCompleted: {
        controller.setWindowShown(windowShown)
        canvas.focus = true // lists in panels ask for it too
    }
    Keys.onPressed: event => {
        const commands = { pausePicture: () => controller.togglePaused(), still: () => controller.takeStill(),
                           clip: () => controller.toggleClip(), compare: () => controller.toggleComparing() }
        for (const command in commands) {
            if (event.accepted || event.isAutoRepeat || KeyTable.find(command, event.key, event.modifiers) < 0)
                continue
            event.accepted = true
            commands[command]()
        }
        const look = event.accepted ? -1 : KeyTable.find("look", event.key, event.modifiers)
        if (look >= 0) {
            event.accepted = true
            controller.stepLook(look === 0 ? -1 : 1)
        }
    }
    KeyCommand {
        command: "open"
        enabled: live.activeFocus
        onActivated: live.controller.chooseMovie()
    }
    Timer {
        interval: 250
        repeat: true
        running: live.controller.ticking && live.windowShown
        onTriggered: live.controller.tick()
    }

    EditorLayout {
        id: measures
        screen: live
        barHeight: bar.height
        underHeight: live.wide ? 0 : choice.height
        sidePlace: Qt.rect(0, 0, 0, 0)
    }
    ThumbnailStyle {
        id: looks
        side: Tokens.thumbs.filter
        gap: 10
        cutOut: false
        edged: true
        captioned: true
        marks: true
    }

    TopBar {
        id: bar
        x: measures.barX
        width: measures.barWidth
        large: live.wide || live.tablet
        column: live.tablet ? measures.underWidth : 0
        title: live.controller.title
        onBack: live.controller.back()
        IconButton {
            visible: live.movie && !live.wide
            iconName: "movie"
            name: qsTranslate("Lamina", "Choose another movie")
            command: "open"
            onClicked: live.controller.chooseMovie()
        }
        IconButton {
            visible: live.controller.canSwitchCamera
            iconName: "switch_camera"
            name: qsTranslate("Lamina", "Other camera")
            onClicked: live.controller.switchCamera()
        }
    }

    Item {
        id: picture
        x: live.wide ? Math.round((live.width - Tokens.bars.sidePanel - width) / 2) : measures.x
        y: live.wide ? bar.height + 6 + Math.round((live.box.height - height) / 2) : measures.y
        width: live.pictureWidth
        height: live.pictureHeight
        onWidthChanged: live.controller.layOut(width, height)
        onHeightChanged: live.controller.layOut(width, height)
        Component.onCompleted: live.controller.layOut(width, height)

        Rectangle {
            anchors.fill: parent
            anchors.margins: -1
            color: Tokens.palette.ground
            border.width: 1
            border.color: Tokens.palette.hairline
        }
        ViewCanvas {
            id: canvas
            objectName: "canvas"
            anchors.fill: parent
            controller: live.controller
            visible: live.usable
            focus: true
            activeFocusOnTab: true
            Accessible.role: Accessible.Graphic
            Accessible.focusable: true
            Accessible.name: qsTranslate("Lamina", "Live picture")
            Accessible.description: qsTranslate("Lamina", "Left and right choose another filter. Held down it shows the picture as it came.")
            FocusRing {
                z: 1
                control: canvas
                inside: canvas.width + 2 * (Tokens.focus.gap + Tokens.focus.ring) > live.width
            }
        }
        LiveCompare {
            anchors.fill: parent
            visible: live.usable
            controller: live.controller
        }
        BusyMark {
            anchors.centerIn: parent
            running: live.controller.starting && !live.controller.paused
            text: qsTranslate("Lamina", "Waiting for the picture")
        }
        LiveTrouble {
            anchors.fill: parent
            controller: live.controller
        }
    }
    LiveTransport {
        visible: live.wide
        x: picture.x
        y: picture.y + picture.height + 18
        width: picture.width
        controller: live.controller
    }

    LiveChoice {
        id: choice
        visible: !live.wide
        stacked: live.small
        slim: live.slim
        x: measures.underX
        y: measures.underY
        width: measures.underWidth
        current: live.panel
        controller: live.controller
        onChosen: panel => live.open(panel)
    }
    EditorThumbnails {
        visible: !live.wide && presence > 0
        name: "filter"
        current: live.panel
        layout: measures
        quick: true
        heading: qsTranslate("Lamina", "Filter")
        thumbnails: live.controller.thumbnails
        style: looks
        marked: live.controller.lookRow
        onChosen: tag => live.controller.chooseLook(tag)
        onHideAsked: live.asked = false
    }
    EditorSliders {
        visible: !live.wide && presence > 0
        name: "effects"
        kind: "strip"
        current: live.panel
        layout: measures
        quick: true
        controller: live.controller
        onHideAsked: live.asked = false
    }

    ToolBar {
        id: tools
        visible: live.upright || live.lying
        x: measures.toolsX
        y: measures.toolsY
        width: measures.toolsWidth
        height: measures.toolsHeight
        cellsWidth: measures.cellsWidth
        spread: true
        tools: live.controller.tools
        onChosen: identifier => live.controller.chooseTool(identifier)
    }
    ToolTray {
        id: tray
        visible: live.small && live.panel === ""
        x: measures.toolsX
        y: measures.smallToolsY
        width: measures.toolsWidth
        height: measures.smallFoot - y
        cellHeight: measures.cellHeight
        tools: live.controller.tools
        onChosen: identifier => live.controller.chooseTool(identifier)
    }
    LiveSidePanel {
        visible: live.wide
        controller: live.controller
        thumbnails: looks
    }

    Toast {
        // In the picture: what stands under it is worked with.
        room: picture.width - 2 * Tokens.space.m
        x: Math.round(picture.x + (picture.width - width) / 2)
        y: picture.y + picture.height - Tokens.space.m - height
        text: live.controller.notice
        action: live.controller.noticeShares ? qsTranslate("Lamina", "Share") : ""
        onActed: live.controller.shareNotice()
        onDone: live.controller.dismissNotice()
    }
}
