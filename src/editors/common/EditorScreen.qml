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
    // Where the tools begin that stand at the foot.
    readonly property real toolsTop: tools.y
    readonly property alias layout: measures
    default property alias under: slot.data
    property alias panelContent: panel.content

    EditorLayout {
        id: measures
        screen: editor
        barHeight: bar.height
        underHeight: editor.underHeight
    }

    Keys.forwardTo: [canvas]
    name: canvasName
    onBack: controller.backBtn()
    Keys.onPressed: event => {
        const tool = controller.tools[KeyTable.find("tool", event.key, event.modifiers)]
        event.accepted = event.accepted || tool !== undefined
        if (tool)
            controller.chooseTool(tool.identifier)
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
        wide: editor.wide
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
            visible: !editor.wide
            width: Tokens.space.s
            height: 1
        }
        LaminaButton {
            visible: !editor.wide
            kind: "pill"
            text: qsTranslate("Lamina", "Save")
            enabled: !editor.controller.saving
            onClicked: editor.controller.shareBtn()
        }
    }

    Paper {
        width: measures.side
        height: measures.side
        x: measures.paperX
        y: measures.paperY

        WorkCanvas {
            id: canvas
            anchors.fill: parent
            controller: editor.controller
            Accessible.name: editor.canvasName
            Accessible.description: editor.canvasDescription
        }
    }

    Item {
        id: slot
        anchors.fill: parent
    }

    ToolBar {
        id: tools
        visible: !editor.wide
        x: editor.width - width
        y: editor.height - height
        width: measures.toolsWidth
        tools: editor.controller.tools
        onChosen: identifier => editor.controller.chooseTool(identifier)
    }

    EditorSidePanel {
        id: panel
        visible: editor.wide
        controller: editor.controller
    }

    Toast {
        room: measures.noticeSpan - measures.noticeMargins
        width: implicitWidth
        height: implicitHeight
        x: editor.width - measures.noticeSpan + (measures.noticeSpan - width) / 2
        y: (editor.wide ? panel.foot : tools.y) - height - Tokens.space.m
        text: editor.controller.notice
        onDone: editor.controller.dismissNotice()
    }
}
