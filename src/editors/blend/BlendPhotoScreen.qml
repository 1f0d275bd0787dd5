import QtQuick
import Lamina

// Two photos over each other on paper, and the tools round them.
AppScreen {
    id: blend

    readonly property real margin: Math.max(0, Math.min(12, (width - 320) / 2))
    readonly property real side: Math.floor(upright ? Math.min(width - 2 * margin, height - 248 - 14 - selector.height)
        : lying ? height - 2 * Tokens.space.m
        : Math.min(height - 180, width - Tokens.bars.sidePanel - 96, 760))
    // The part of the window that holds the canvas, and for a lying phone the column of the tools beside it.
    readonly property real room: wide ? width - Tokens.bars.sidePanel : width
    readonly property real column: width - side - 2 * Tokens.space.m

    // The bar's order: reset, move, tools, effects, stickers.
    function choose(tool) {
        if (tool === 0)
            controller.resetBtn()
        else if (tool === 1)
            controller.panBtn()
    }

    Keys.forwardTo: [canvas]
    Keys.onEscapePressed: controller.backBtn()
    Keys.onBackPressed: controller.backBtn()
    Shortcut {
        sequences: [StandardKey.Undo]
        enabled: blend.activeFocus
        onActivated: blend.controller.undo()
    }
    Shortcut {
        sequences: [StandardKey.Redo]
        enabled: blend.activeFocus
        onActivated: blend.controller.redo()
    }
    Shortcut {
        sequences: [StandardKey.Save]
        enabled: blend.activeFocus
        onActivated: blend.controller.shareBtn()
    }

    TopBar {
        id: bar
        x: blend.lying ? blend.width - width : 0
        width: blend.lying ? blend.column : blend.room
        wide: blend.wide
        onBack: blend.controller.backBtn()
        IconButton {
            iconName: "undo"
            name: qsTranslate("Lamina", "Undo")
            enabled: blend.controller.canUndo
            onClicked: blend.controller.undo()
        }
        IconButton {
            iconName: "redo"
            name: qsTranslate("Lamina", "Redo")
            enabled: blend.controller.canRedo
            onClicked: blend.controller.redo()
        }
        Item {
            visible: !blend.wide
            width: 8
            height: 1
        }
        LaminaButton {
            visible: !blend.wide
            kind: "pill"
            text: qsTranslate("Lamina", "Save")
            enabled: !blend.controller.saving
            onClicked: blend.controller.shareBtn()
        }
    }

    Paper {
        id: sheet
        width: blend.side
        height: blend.side
        x: blend.lying ? Tokens.space.m : Math.round((blend.room - width) / 2)
        y: {
            if (blend.lying)
                return Tokens.space.m
            const block = blend.side + 14 + selector.height
            if (blend.wide)
                return Math.round(bar.height + 6 + Math.max(0, blend.height - bar.height - 52 - block - 6) / 2)
            return Math.round(bar.height + Math.max(0, blend.height - 196 - bar.height - block) * 0.46)
        }

        WorkCanvas {
            id: canvas
            anchors.fill: parent
            controller: blend.controller
            Accessible.name: qsTranslate("Lamina", "The blend")
            Accessible.description: qsTranslate("Lamina", "Arrow keys move the second photo, plus and minus zoom it")
        }
    }

    BlendPhotoButtons {
        id: selector
        // As wide as the canvas, unless that had to be drawn smaller.
        width: blend.lying ? blend.column - 20 : blend.wide ? Math.min(360, blend.side)
             : blend.width - 2 * Math.max(blend.margin, Tokens.space.m)
        x: blend.lying ? blend.width - width - Tokens.space.m : Math.round((blend.room - width) / 2)
        y: blend.lying ? bar.height + Tokens.space.m : sheet.y + sheet.height + (blend.wide ? 20 : 14)
        controller: blend.controller
    }

    HintPill {
        readonly property real space: tools.y - selector.y - selector.height
        visible: !blend.wide && opacity > 0 && space >= implicitHeight
        width: Math.min(implicitWidth, selector.width)
        x: selector.x + (selector.width - width) / 2
        y: selector.y + selector.height + (space - height) / 2
        shown: blend.controller.panBool && !blend.controller.edited
        text: qsTranslate("Lamina", "Drag to move, pinch to zoom")
    }

    ToolBar {
        id: tools
        visible: !blend.wide
        x: blend.width - width
        y: blend.height - height
        width: blend.lying ? blend.column : blend.width
        tools: blend.controller.tools
        onChosen: tool => blend.choose(tool)
    }

    BlendSidePanel {
        id: panel
        visible: blend.wide
        controller: blend.controller
        onChosen: tool => blend.choose(tool)
    }

    Toast {
        readonly property real span: blend.wide ? panel.width : blend.lying ? blend.column : blend.width
        room: span - 2 * (blend.wide ? Tokens.space.sheetMargin : Tokens.space.l)
        width: implicitWidth
        height: implicitHeight
        x: blend.width - span + (span - width) / 2
        y: (blend.wide ? panel.foot : tools.y) - height - Tokens.space.m
        text: blend.controller.notice
        onDone: blend.controller.dismissNotice()
    }
}
