import QtQuick
import Lamina

// What the screens of all editors share: the canvas on its paper, undo and save over it, the tools round it, the
// notice. An editor adds what stands under its paper, and the panels that its tools open.
AppScreen {
    id: editor

    // The canvas for those who can't see it.
    property string canvasName
    property string canvasDescription
    // Height of what stands under the paper.
    property real underHeight: 0
    // Where the tools begin that stand under what is under the paper.
    readonly property real toolsTop: small ? tray.y + tray.start : tools.y
    // The panel that is shown and takes room from anything; null: none.
    readonly property EditorPanel docked: panelWhere(panel => panel.shown && panel.docks && !wide)
    // The one that is on or over the tools, in its place or on its way.
    readonly property EditorPanel covering: panelWhere(panel => panel.onTools && panel.presence > 0)
    readonly property real cover: covering ? covering.presence : 0
    property bool toolsHidden: false
    // The keys of the KeyTable that choose the tools in their order.
    property string toolCommand: "tool"
    // What fingers, or a mouse, can do on the canvas, and whether that is to be told.
    property string hint: gestureHint
    property bool hinting: false
    // Of a key, radians: as a step of the wheel.
    readonly property real turnStep: Math.PI / 60
    // What stands over the panels in the side panel takes this much of their height.
    property real sideHead: 0
    // The side panel's room for both, in the window.
    readonly property rect sideRoom: Qt.rect(panel.x + panel.place.x, panel.place.y, panel.place.width, panel.place.height)
    readonly property alias layout: measures
    default property alias under: slot.data
    // The EditorPanels.
    property alias panels: dock.data

    EditorLayout {
        id: measures
        screen: editor
        barHeight: bar.height
        underHeight: editor.underHeight
        sidePlace: Qt.rect(editor.sideRoom.x, editor.sideRoom.y + editor.sideHead,
            editor.sideRoom.width, editor.sideRoom.height - editor.sideHead)
    }

    function panelWhere(holds) {
        for (let i = 0; i < dock.children.length; ++i) {
            if (holds(dock.children[i]))
                return dock.children[i]
        }
        return null
    }
    function holdsFocus(item) {
        let focused = Window.activeFocusItem
        while (focused && focused !== item)
            focused = focused.parent
        return focused === item
    }
    // The keyboard goes with what lies on the tools, before these can't be seen, and back to them.
    function hideTools() {
        const hidden = cover === 1 && docked !== null
        if (cover > 0 && docked && (holdsFocus(tools) || holdsFocus(tray)))
            docked.takeFocus()
        toolsHidden = hidden
    }
    // What a double tap on the canvas asks for, in its points, and the key for the same.
    function doubleTap(x, y) {
        bringBack()
    }
    function bringBack() {
        controller.bringPhotoBack()
    }
    function chooseTool(identifier) {
        controller.chooseTool(identifier)
    }
    // Whether there was something to take away before the screen is left.
    function stepBack() {
        return controller.letGo()
    }
    function focusTools() {
        (small ? tray : tools).takeFocus()
    }

    onCoverChanged: hideTools()
    onDockedChanged: hideTools()
    Keys.forwardTo: [canvas]
    name: canvasName
    onBack: if (!stepBack()) controller.backBtn()
    Keys.onPressed: event => {
        const tool = controller.tools[KeyTable.find(toolCommand, event.key, event.modifiers)]
        event.accepted = event.accepted || tool !== undefined
        if (tool)
            chooseTool(tool.identifier)
        if (KeyTable.find("bringBack", event.key, event.modifiers) >= 0) {
            event.accepted = true
            bringBack()
        }
        const turn = KeyTable.find("turn", event.key, event.modifiers)
        if (turn >= 0) {
            event.accepted = true
            controller.turnBy(turn === 0 ? -turnStep : turnStep)
        }
        if (controller.stickerActive && KeyTable.find("deleteSticker", event.key, event.modifiers) >= 0) {
            event.accepted = true
            controller.deleteSticker()
        }
    }
    KeyCommand {
        command: "undo"
        enabled: editor.activeFocus
        onActivated: editor.controller.undo()
    }
    KeyCommand {
        command: "redo"
        enabled: editor.activeFocus
        onActivated: editor.controller.redo()
    }
    KeyCommand {
        command: "save"
        enabled: editor.activeFocus
        onActivated: editor.controller.shareBtn()
    }

    TopBar {
        id: bar
        x: measures.barX
        width: measures.barWidth
        large: editor.wide || editor.tablet
        column: editor.tablet ? measures.underWidth : 0
        onBack: editor.controller.backBtn()
        IconButton {
            iconName: "undo"
            name: qsTranslate("Lamina", "Undo")
            command: "undo"
            enabled: editor.controller.canUndo
            onClicked: editor.controller.undo()
        }
        IconButton {
            iconName: "redo"
            name: qsTranslate("Lamina", "Redo")
            command: "redo"
            enabled: editor.controller.canRedo
            onClicked: editor.controller.redo()
        }
        Item {
            id: spacer
            visible: !editor.wide
            width: Tokens.space.s
            height: 1
        }
        LaminaButton {
            visible: !editor.wide
            width: Math.min(implicitWidth, bar.room - 2 * Tokens.touch.iconButton - spacer.width)
            kind: "pill"
            text: qsTranslate("Lamina", "Save")
            onClicked: editor.controller.shareBtn()
        }
    }

    Paper {
        width: measures.side
        height: measures.side
        x: measures.x
        y: measures.y

        WorkCanvas {
            id: canvas
            anchors.fill: parent
            controller: editor.controller
            Accessible.name: editor.canvasName
            Accessible.description: editor.canvasDescription
            onTapped: (x, y) => editor.controller.tapCanvas(x, y)
            onDoubleTapped: (x, y) => editor.doubleTap(x, y)
        }
    }

    Item {
        id: slot
        anchors.fill: parent
    }

    HintPill {
        // A tray over the tools leaves room for it, where there is enough.
        readonly property bool overTray: editor.docked !== null && editor.docked.kind === "tray"
            && !editor.docked.onTools && !editor.docked.quick
        readonly property real space: (overTray ? editor.docked.standingY : editor.toolsTop) - measures.underFoot
        visible: !editor.wide && opacity > 0 && space >= height + 2 * Tokens.space.s
        room: measures.underWidth
        x: measures.underX + (measures.underWidth - width) / 2
        y: measures.underFoot + (space - height) / 2
        shown: editor.hinting && !editor.controller.edited && editor.controller.notice === "" && (!editor.docked || overTray)
        text: editor.hint
    }

    Item {
        id: dock
        anchors.fill: parent
        z: editor.covering || editor.wide ? 1 : 0
    }

    ToolBar {
        id: tools
        visible: (editor.upright || editor.lying) && !editor.toolsHidden
        x: measures.toolsX
        y: measures.toolsY
        width: measures.toolsWidth
        height: measures.toolsHeight
        cellsWidth: measures.cellsWidth
        spread: editor.tablet
        tools: editor.controller.tools
        onChosen: identifier => editor.chooseTool(identifier)
    }
    ToolTray {
        id: tray
        visible: editor.small && !editor.toolsHidden
        opacity: 1 - editor.cover
        x: measures.toolsX
        y: measures.smallToolsY
        width: measures.toolsWidth
        height: measures.smallFoot - y
        cellHeight: measures.cellHeight
        tools: editor.controller.tools
        onChosen: identifier => editor.chooseTool(identifier)
    }

    EditorSidePanel {
        id: panel
        visible: editor.wide
        controller: editor.controller
    }

    Toast {
        id: toast
        // Over the tools or the window's foot; in the paper where it would cover what stands under that.
        readonly property real foot: (editor.wide || editor.small ? editor.height : tools.y) - Tokens.space.m
        readonly property bool fits: !editor.small && !editor.docked && foot - height >= measures.underFoot + Tokens.space.xs

        room: fits ? measures.noticeWidth : measures.side - 2 * Tokens.space.m
        x: Math.round((fits ? measures.noticeMiddle : measures.x + measures.side / 2) - width / 2)
        y: (fits ? foot : measures.canvasFoot - Tokens.space.m) - height
        text: editor.controller.notice
        onDone: editor.controller.dismissNotice()
    }
}
