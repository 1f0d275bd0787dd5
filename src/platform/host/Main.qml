import QtQuick
import Lamina

// The window: its screens on a dark ground, one over the other.
FocusScope {
    id: root

    width: 360
    height: 720
    focus: true

    Binding {
        target: Host
        property: "slideDuration"
        value: Theme.duration(Tokens.motion.push)
    }
    Binding {
        target: Host
        property: "fadeDuration"
        value: Theme.duration(Tokens.motion.fade)
    }
    Binding {
        target: Host
        property: "sheetDuration"
        value: Theme.duration(Tokens.motion.sheet)
    }

    KeyCommand {
        command: "paste"
        enabled: !Host.progress.blocking
        onActivated: Host.paste()
    }
    KeyCommand {
        command: "keys"
        enabled: !Host.progress.blocking
        onActivated: Host.showKeys()
    }
    KeyCommand {
        command: "fullScreen"
        onActivated: Host.toggleFullScreen()
    }
    KeyCommand {
        command: "close"
        onActivated: Host.closeWindow()
    }
    // There is one window, and its closing is the application's end.
    KeyCommand {
        command: "quit"
        onActivated: Host.closeWindow()
    }

    Repeater {
        model: Host.screens
        delegate: ScreenFrame {
            width: root.width
            height: root.height
        }
    }

    PhotoDropArea {
        id: drops
        anchors.fill: parent
        enabled: !Host.progress.blocking
    }

    // Two strokes, so that it is seen on dark screens and on paper.
    Rectangle {
        anchors.fill: parent
        anchors.margins: Tokens.space.xs
        visible: drops.hovered
        color: Qt.alpha(Tokens.palette.accent, 0.12)
        radius: Tokens.radius.tray
        border.width: 3
        border.color: Tokens.palette.focusGap
        Rectangle {
            anchors.fill: parent
            anchors.margins: parent.border.width
            color: "transparent"
            radius: parent.radius - parent.border.width
            border.width: 3
            border.color: Tokens.palette.accentText
        }
    }

    HudOverlay {
        anchors.fill: parent
    }
}
