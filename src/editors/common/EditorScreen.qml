import QtQuick
import Lamina

// What the screens of all editors share: the canvas on its paper, undo and save over it, the tools round it, the
// notice. An editor adds what stands under its paper, and what its side panel says.
AppScreen {
    id: editor

    // The canvas for those who can't see it.
    property string canvasName
    property string canvasDescription
    // Height of what stands under the paper.
    property real underHeight: 0
    // Where the tools begin that stand under what is under the paper.
    readonly property real toolsTop: small ? tray.y + tray.start : tools.y
    readonly property alias layout: measures
    default property alias under: slot.data
    property alias panelContent: panel.content

    EditorLayout {
        id: measures
        screen: editor
        barHeight: bar.height
        underHeight: editor.underHeight
        toolNames: editor.controller.tools.map(tool => tool.name)
    }

    Keys.forwardTo: [canvas]
    name: canvasName
    onBack: controller.backBtn()
    Keys.onPressed: event => {
        const tool = controller.tools[KeyTable.find("tool", event.key, event.modifiers)]
        event.accepted = event.accepted || tool !== undefined
        if (tool)
            controller.chooseTool(tool.identifier)
        if (KeyTable.find("bringBack", event.key, event.modifiers) >= 0) {
            event.accepted = true
            controller.bringPhotoBack()
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
            id: space
            visible: !editor.wide
            width: Tokens.space.s
            height: 1
        }
        LaminaButton {
            visible: !editor.wide
            width: Math.min(implicitWidth, bar.room - 2 * Tokens.touch.iconButton - space.width)
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
            onDoubleTapped: editor.controller.bringPhotoBack()
        }
    }

    Item {
        id: slot
        anchors.fill: parent
    }

    ToolBar {
        id: tools
        visible: editor.upright || editor.lying
        x: measures.toolsX
        y: editor.height - height
        width: measures.toolsWidth
        height: measures.toolsHeight
        cellsWidth: measures.cellsWidth
        spread: editor.tablet
        tools: editor.controller.tools
        onChosen: identifier => editor.controller.chooseTool(identifier)
    }
    ToolTray {
        id: tray
        visible: editor.small
        x: measures.toolsX
        y: measures.underFoot + Tokens.space.m
        width: measures.toolsWidth
        height: measures.smallFoot - y
        perRow: measures.cellsInRow
        cellHeight: measures.cellHeight
        tools: editor.controller.tools
        onChosen: identifier => editor.controller.chooseTool(identifier)
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
        readonly property bool fits: !editor.small && foot - height >= measures.underFoot + Tokens.space.xs

        room: fits ? measures.noticeWidth : measures.side - 2 * Tokens.space.m
        x: Math.round((fits ? measures.noticeMiddle : measures.x + measures.side / 2) - width / 2)
        y: (fits ? foot : measures.canvasFoot - Tokens.space.m) - height
        text: editor.controller.notice
        onDone: editor.controller.dismissNotice()
    }
}
