import QtQuick
import Lamina

// A UIImagePickerController that takes a photo: what the camera sees in its own shape, then the photo in its place.
AppScreen {
    id: screen

    readonly property var camera: controller.camera
    // PhotoCamera.State
    readonly property bool starting: camera.state === 0
    readonly property bool live: camera.state === 1
    readonly property bool taking: camera.state === 2
    readonly property bool taken: camera.state === 3
    readonly property bool failed: camera.state === 4
    readonly property bool inSight: Window.visibility !== Window.Hidden && Window.visibility !== Window.Minimized

    // The controls stand under the picture, or in a column at its right.
    readonly property real column: wide ? Tokens.bars.sidePanel
        : lying ? Math.max(200, Math.min(Tokens.bars.sidePanel, Math.round(width - height * 4 / 3)))
        : slim ? 96 : Math.max(152, Math.min(Tokens.bars.sidePanel, width - Math.round((height - bar.height) * 4 / 3)))
    readonly property real foot: Math.max(188, actions.implicitHeight + Tokens.space.l + Tokens.space.xxl)

    name: bar.title === "" ? qsTranslate("Lamina", "Camera") : bar.title
    onBack: taken ? camera.retake() : controller.cancel()
    Keys.onPressed: event => {
        const shutter = live && KeyTable.find("shutter", event.key, event.modifiers) >= 0
        const again = taken && KeyTable.find("retake", event.key, event.modifiers) >= 0
        const use = taken && KeyTable.find("use", event.key, event.modifiers) >= 0
        event.accepted = event.accepted || shutter || again || use
        if (event.isAutoRepeat)
            return
        if (shutter)
            camera.takePhoto()
        else if (again)
            camera.retake()
        else if (use)
            controller.usePhoto()
    }
    onInSightChanged: camera.setInSight(inSight)
    onTakingChanged: if (taking) blink.restart()

    // What is hidden gives the keyboard up.
    function moveFocus() {
        if (taken && !slim)
            use.focus = true
        else if (taken)
            pill.focus = true
        else if (failed)
            (slim ? pill : screen.camera.refused ? settings : again).focus = true
        else
            shutter.focus = true
    }
    onLiveChanged: if (live) moveFocus()
    onTakenChanged: moveFocus()
    onFailedChanged: moveFocus()

    // The ground of a round button.
    component QuietDisc: Rectangle {
        z: -1
        anchors.fill: parent
        radius: width / 2
        color: parent.down ? Tokens.palette.field : parent.hovered ? Tokens.palette.cell : Tokens.palette.panelRaised
    }

    SidePanel {
        visible: screen.wide
    }

    TopBar {
        id: bar
        x: screen.lying ? screen.width - width : 0
        width: screen.lying ? screen.column : screen.wide ? screen.width - screen.column : screen.width
        large: screen.wide || screen.tablet
        column: screen.tablet ? screen.tabletColumn : 0
        backIcon: "YMSIconCancel"
        backName: qsTranslate("Lamina", "Close")
        // There the key goes one step back, to the camera.
        backCommand: screen.taken ? "" : "back"
        title: screen.controller.title
        onBack: screen.controller.cancel()
        // The column of a slim window has no room for words.
        LaminaButton {
            id: pill
            visible: screen.slim && (screen.taken || (screen.failed && text !== ""))
            width: Math.min(implicitWidth, bar.room)
            kind: "pill"
            text: screen.taken ? use.text : screen.camera.refused ? settings.text : screen.camera.canTryAgain ? again.text : ""
            onClicked: screen.taken ? screen.controller.usePhoto() : screen.camera.refused ? screen.camera.openSettings() : screen.camera.tryAgain()
        }
    }

    // The room of the picture.
    Item {
        id: room

        readonly property real inset: screen.wide ? Tokens.space.xxl : screen.small ? Tokens.space.m : 0

        x: inset
        y: screen.lying ? 0 : bar.height
        width: (screen.upright ? screen.width : screen.width - screen.column) - 2 * inset
        height: screen.height - y - (screen.upright ? screen.foot : inset)

        Item {
            id: frame

            width: Math.floor(Math.min(room.width, room.height * screen.camera.aspectRatio))
            height: Math.floor(width / screen.camera.aspectRatio)
            x: Math.round((room.width - width) / 2)
            y: Math.round((room.height - height) * (screen.upright ? 0.42 : 0.5))
            onWidthChanged: screen.camera.place(width, height)
            onHeightChanged: screen.camera.place(width, height)
            Component.onCompleted: screen.camera.place(width, height)

            ViewCanvas {
                id: canvas
                objectName: "canvas"
                anchors.fill: parent
                controller: screen.controller
                acceptsInput: false
                visible: !screen.starting && !screen.failed
                Accessible.role: Accessible.Graphic
                Accessible.name: screen.taken ? qsTranslate("Lamina", "The photo that you took") : qsTranslate("Lamina", "What the camera sees")
                Accessible.description: screen.camera.deviceName
            }
            // As a shutter that closes.
            Rectangle {
                anchors.fill: parent
                color: Tokens.palette.ground
                opacity: 0
                visible: opacity > 0
                NumberAnimation on opacity {
                    id: blink
                    running: false
                    from: 1
                    to: 0
                    duration: Theme.duration(Tokens.motion.mark)
                }
            }
        }

        // In the picture's place while there is none.
        Rectangle {
            anchors.fill: frame
            visible: screen.starting
            color: Tokens.palette.field
        }
        Column {
            id: words
            anchors.centerIn: parent
            width: Math.min((screen.starting ? frame.width : parent.width) - 2 * Tokens.space.xl, 360)
            visible: screen.starting || screen.failed
            spacing: Tokens.space.s
            Icon {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "camera"
                size: 48
                opacity: Tokens.opacity.disabled
            }
            StyledText {
                width: parent.width
                visible: text !== ""
                text: screen.camera.title
                role: Tokens.type.title
                horizontalAlignment: Text.AlignHCenter
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            StyledText {
                width: parent.width
                visible: text !== ""
                text: screen.starting && screen.camera.message === "" && slow.passed ? qsTranslate("Lamina", "Starting the camera…") : screen.camera.message
                role: Tokens.type.caption
                color: Tokens.palette.textSecondary
                horizontalAlignment: Text.AlignHCenter
                Accessible.name: text
            }
        }
        Timer {
            id: slow
            property bool passed: false
            interval: 500
            running: screen.starting && !passed
            onTriggered: passed = true
        }
    }

    Item {
        id: controls

        readonly property real centre: width / 2
        // The other camera's button has room at the shutter's right.
        readonly property bool beside: centre >= shutter.width / 2 + other.width + 2 * Tokens.space.l

        x: screen.upright ? 0 : screen.width - width
        y: screen.upright ? screen.height - height : screen.wide ? 0 : bar.height
        width: screen.upright ? screen.width : screen.column
        height: screen.upright ? screen.foot : screen.height - y

        StyledText {
            anchors.horizontalCenter: shutter.horizontalCenter
            width: parent.width - 2 * Tokens.space.m
            y: shutter.y - height - Tokens.space.m
            visible: screen.taking
            text: qsTranslate("Lamina", "Hold still")
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            horizontalAlignment: Text.AlignHCenter
            Accessible.name: text
        }
        ShutterButton {
            id: shutter
            x: Math.round(controls.centre - width / 2)
            y: Math.round((parent.height - height) / 2)
            visible: !screen.taken && !screen.failed
            enabled: screen.live || screen.taking
            focus: true
            onClicked: screen.camera.takePhoto()
        }
        IconButton {
            id: other
            width: Tokens.touch.alertButton
            height: width
            x: Math.round(controls.beside ? Math.min(controls.centre + 120 - width / 2, parent.width - width - Tokens.space.l) : controls.centre - width / 2)
            y: Math.round(controls.beside ? shutter.y + (shutter.height - height) / 2 : shutter.y + shutter.height + Tokens.space.xl)
            visible: screen.camera.canSwitch && !screen.taken && !screen.failed
            enabled: !screen.taking
            iconName: "switch_camera"
            name: qsTranslate("Lamina", "Other camera")
            onClicked: screen.camera.switchCamera()
            QuietDisc {}
        }
        IconButton {
            anchors.centerIn: shutter
            width: other.width
            height: width
            visible: screen.slim && screen.taken
            iconName: "undo"
            name: retake.text
            command: "retake"
            onClicked: screen.camera.retake()
            QuietDisc {}
        }
        Column {
            id: actions

            readonly property real inset: screen.wide ? Tokens.space.sheetMargin : Tokens.space.l
            readonly property real inner: screen.tablet ? screen.tabletColumn : parent.width - 2 * inset

            visible: !screen.slim
            x: Math.round((parent.width - inner) / 2)
            y: parent.height - height - (screen.upright ? Tokens.space.xxl : inset)
            width: inner
            spacing: Tokens.space.m
            LaminaButton {
                id: use
                visible: screen.taken
                width: parent.width
                iconName: actions.inner < 160 ? "" : "check"
                text: qsTranslate("Lamina", "Use photo")
                onClicked: screen.controller.usePhoto()
            }
            LaminaButton {
                id: retake
                visible: screen.taken
                width: parent.width
                kind: "quiet"
                iconName: actions.inner < 160 ? "" : "undo"
                text: qsTranslate("Lamina", "Retake")
                onClicked: screen.camera.retake()
            }
            LaminaButton {
                id: settings
                visible: screen.failed && screen.camera.refused
                width: parent.width
                text: qsTranslate("Lamina", "Settings")
                onClicked: screen.camera.openSettings()
            }
            LaminaButton {
                id: again
                visible: screen.failed && screen.camera.canTryAgain
                width: parent.width
                kind: screen.camera.refused ? "quiet" : "accent"
                text: qsTranslate("Lamina", "Try again")
                onClicked: screen.camera.tryAgain()
            }
        }
    }
}
