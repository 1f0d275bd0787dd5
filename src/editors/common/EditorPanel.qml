import QtQuick
import Lamina

// What a tool opens. It docks where its layout has room for it, comes and goes, and has a button to hide it where it
// lies on the tools. An editor fills it, and says which one is shown.
Item {
    id: panel

    required property EditorLayout layout
    // How it docks; see EditorLayout.
    property string kind: "tray"
    // As high as it would be.
    property real wanted: 0
    // It answers a touch at once, and is no tool that is laid out.
    property bool quick: false
    // Of all panels the name of the one that is shown, and this one's; empty: none.
    required property string current
    required property string name
    // Only a side panel has room for it.
    property bool wideOnly: false
    // Stands over it in a wide window.
    property string heading
    default property alias content: body.data
    // Its button for that was pressed.
    signal hideAsked()

    readonly property bool shown: current === name
    readonly property real standingY: layout.dockY(kind, height)
    readonly property bool docks: layout.wide || !wideOnly
    // It stands where the tools do, which can't be seen under it.
    readonly property bool onTools: docks && (layout.small || (kind === "drawer" && !layout.wide))
    readonly property real foot: onTools ? Tokens.touch.minimum : 0
    readonly property bool framed: layout.small || (kind === "tray" && !layout.wide)
    readonly property real edge: framed ? Tokens.elevation.trayEdge.width : 0
    readonly property real head: title.visible ? title.height + Tokens.space.s : 0
    readonly property real travel: layout.wide ? 0 : layout.height - standingY

    // From out of sight, 0, to its place, 1.
    property real presence: 0

    onCurrentChanged: {
        const to = current === name ? 1 : 0
        // One in whose place another comes leaves at once.
        const moves = !Theme.reducedMotion && (to === 1 || (current === "" && !layout.wide))
        if (to === (motion.running ? motion.to : presence))
            return
        motion.stop()
        motion.to = to
        if (moves)
            motion.start()
        else
            presence = to
    }
    Component.onCompleted: presence = shown ? 1 : 0

    SequentialAnimation {
        id: motion
        property real to: 0
        PauseAnimation { duration: panel.layout.wide || panel.quick ? 0 : Tokens.motion.toolPanelDelay }
        NumberAnimation {
            target: panel
            property: "presence"
            to: motion.to
            duration: panel.layout.wide || panel.quick ? Tokens.motion.fade : Tokens.motion.toolPanel
            easing.type: motion.to === 1 ? Easing.OutCubic : Easing.InCubic
        }
    }

    // To its first control.
    function takeFocus() {
        nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    }

    x: layout.dockX(kind)
    y: standingY + (1 - presence) * travel
    z: onTools ? 1 : 0
    width: layout.dockWidth(kind)
    height: layout.dockHeight(kind, wanted)
    opacity: presence
    visible: docks && presence > 0

    // What lies under it is out of reach.
    MouseArea {
        anchors.fill: parent
        enabled: panel.onTools
        acceptedButtons: Qt.AllButtons
        onWheel: wheel => wheel.accepted = true
    }
    TrayCard {
        anchors.fill: parent
        visible: panel.framed
    }
    Rectangle {
        anchors.fill: parent
        visible: panel.onTools && !panel.framed
        color: Tokens.palette.panel
        Rectangle {
            width: parent.width
            height: 1
            color: Tokens.palette.hairline
        }
    }
    StyledText {
        id: title
        visible: panel.layout.wide && text !== ""
        width: parent.width
        text: panel.heading
        role: Tokens.type.caption
        strong: true
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Item {
        id: body
        x: panel.edge
        y: panel.head + panel.edge
        width: parent.width - 2 * panel.edge
        height: parent.height - y - Math.max(panel.edge, panel.foot)
    }
    IconButton {
        visible: panel.onTools
        x: (parent.width - width) / 2
        y: parent.height - height
        iconName: "ExpendLess"
        name: qsTranslate("Lamina", "Hide")
        onClicked: {
            const keys = activeFocus && Host.focusVisible
            panel.hideAsked()
            if (keys)
                panel.layout.screen.focusTools()
        }
    }
    // Nothing is pressed on its way out.
    MouseArea {
        anchors.fill: parent
        enabled: !panel.shown
        acceptedButtons: Qt.AllButtons
    }
}
