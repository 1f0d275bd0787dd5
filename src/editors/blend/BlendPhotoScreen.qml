import QtQuick
import Lamina

// Two photos over each other on paper, and the tools round them.
AppScreen {
    id: blend

    readonly property real margin: Math.max(0, Math.min(12, (width - 320) / 2))
    readonly property real selectorHeight: Math.max(photoButton1.implicitHeight, photoButton2.implicitHeight)
    readonly property real side: Math.floor(upright ? Math.min(width - 2 * margin, height - 248 - 14 - selectorHeight)
        : lying ? height - 2 * Tokens.space.m
        : Math.min(height - 180, width - Tokens.bars.sidePanel - 96, 760))
    readonly property real room: wide ? width - Tokens.bars.sidePanel : width
    readonly property real column: width - side - 2 * Tokens.space.m

    readonly property bool photo2Above: controller.photo2OnTop

    function caption(photo) {
        if (controller.panBool)
            return photo === 1 ? qsTranslate("Lamina", "Stays in place") : qsTranslate("Lamina", "On top, moves")
        return (photo === 2) === photo2Above ? qsTranslate("Lamina", "On top") : qsTranslate("Lamina", "Below")
    }
    // The bar's order: reset, move, tools, effects, stickers.
    function choose(tool) {
        if (tool === 0)
            controller.resetBtn()
        else if (tool === 1)
            controller.panBtn()
    }

    Keys.onEscapePressed: controller.backBtn()
    Keys.onBackPressed: controller.backBtn()
    Keys.onPressed: event => {
        const far = event.modifiers & Qt.ShiftModifier ? 10 : 1
        const steps = { [Qt.Key_Left]: [-far, 0], [Qt.Key_Right]: [far, 0], [Qt.Key_Up]: [0, -far], [Qt.Key_Down]: [0, far] }
        if (event.key in steps)
            controller.nudge(steps[event.key][0], steps[event.key][1])
        else if (event.modifiers & Qt.ControlModifier)
            return
        else if (event.key === Qt.Key_Plus || event.key === Qt.Key_Equal)
            controller.zoomBy(1.05)
        else if (event.key === Qt.Key_Minus)
            controller.zoomBy(1 / 1.05)
        else
            return
        event.accepted = true
    }
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
            const block = blend.side + 14 + blend.selectorHeight
            if (blend.wide)
                return Math.round(bar.height + 6 + Math.max(0, blend.height - bar.height - 52 - block - 6) / 2)
            return Math.round(bar.height + Math.max(0, blend.height - 196 - bar.height - block) * 0.46)
        }

        ViewCanvas {
            id: canvas
            objectName: "canvas"
            anchors.fill: parent
            controller: blend.controller
            focus: true
            activeFocusOnTab: true
            Accessible.role: Accessible.Graphic
            Accessible.name: qsTranslate("Lamina", "The blend")
            Accessible.description: qsTranslate("Lamina", "Arrow keys move the second photo, plus and minus zoom it")
            Accessible.focusable: true
            FocusRing {
                shown: canvas.visualFocus
            }
        }
    }

    Row {
        id: selector
        readonly property real buttonWidth: (width - spacing) / 2
        width: blend.lying ? blend.column - 20 : blend.wide ? Math.min(360, blend.side) : blend.side
        x: blend.lying ? blend.width - blend.column + 8 : Math.round((blend.room - width) / 2)
        y: blend.lying ? bar.height + Tokens.space.m : sheet.y + sheet.height + (blend.wide ? 20 : 14)
        spacing: Tokens.space.s
        PhotoButton {
            id: photoButton1
            width: selector.buttonWidth
            title: qsTranslate("Lamina", "Photo 1")
            caption: blend.caption(1)
            picture: blend.controller.photo1Picture
            selected: blend.controller.photo1Selected
            dimmed: blend.controller.panBool
            onClicked: blend.controller.photo1()
        }
        PhotoButton {
            id: photoButton2
            width: selector.buttonWidth
            title: qsTranslate("Lamina", "Photo 2")
            caption: blend.caption(2)
            picture: blend.controller.photo2Picture
            selected: blend.controller.photo2Selected
            onClicked: blend.controller.photo2()
        }
    }

    HintPill {
        visible: !blend.wide && opacity > 0 && space >= implicitHeight
        readonly property real space: toolBar.y - selector.y - selector.height
        width: Math.min(implicitWidth, selector.width)
        x: selector.x + (selector.width - width) / 2
        y: selector.y + selector.height + (space - height) / 2
        shown: blend.controller.panBool && !blend.controller.edited
        text: qsTranslate("Lamina", "Drag to move, pinch to zoom")
    }

    Rectangle {
        id: toolBar
        visible: !blend.wide
        x: blend.lying ? blend.width - width : 0
        y: blend.height - height
        width: blend.lying ? blend.column + 4 : blend.width
        height: Math.max(Tokens.bars.tools, tools.implicitHeight + Tokens.space.xxl)
        color: Tokens.palette.panel
        Rectangle {
            width: parent.width
            height: 1
            color: Tokens.palette.hairline
        }
        ToolRow {
            id: tools
            y: 12
            anchors.horizontalCenter: parent.horizontalCenter
            room: parent.width
            tools: blend.controller.tools
            onChosen: index => blend.choose(index)
        }
    }

    Rectangle {
        visible: blend.wide
        x: blend.width - width
        width: Tokens.bars.sidePanel
        height: parent.height
        color: Tokens.palette.panel
        Rectangle {
            width: 1
            height: parent.height
            color: Tokens.palette.hairline
        }
        ToolRow {
            id: wideTools
            y: 14
            anchors.horizontalCenter: parent.horizontalCenter
            room: parent.width - 2 * Tokens.space.s
            spacing: 5
            tools: blend.controller.tools
            onChosen: index => blend.choose(index)
        }
        Rectangle {
            y: 84
            width: parent.width
            height: 1
            color: Tokens.palette.hairline
        }
        Column {
            x: Tokens.space.sheetMargin
            y: 104
            width: parent.width - 2 * Tokens.space.sheetMargin
            spacing: Tokens.space.s
            StyledText {
                width: parent.width
                text: qsTranslate("Lamina", "Move")
                role: Tokens.type.caption
                strong: true
                Accessible.role: Accessible.Heading
            }
            StyledText {
                width: parent.width
                text: qsTranslate("Lamina", "Drag the second photo, pinch or turn the wheel to zoom it. Arrow keys move it a little, plus and minus zoom.")
                role: Tokens.type.caption
                color: Tokens.palette.textSecondary
            }
        }
        LaminaButton {
            x: Tokens.space.sheetMargin
            width: parent.width - 2 * Tokens.space.sheetMargin
            y: parent.height - height - Tokens.space.sheetMargin
            text: qsTranslate("Lamina", "Save")
            enabled: !blend.controller.saving
            onClicked: blend.controller.shareBtn()
        }
    }

    Toast {
        room: (blend.wide ? blend.room : blend.lying ? blend.column : blend.width) - 2 * Tokens.space.l
        width: implicitWidth
        height: implicitHeight
        x: (blend.lying ? blend.width - blend.column : 0) + ((blend.wide ? blend.room : blend.lying ? blend.column : blend.width) - width) / 2
        y: blend.height - height - (blend.wide ? Tokens.space.xl : toolBar.height + Tokens.space.m)
        text: blend.controller.notice
        onDone: blend.controller.dismissNotice()
    }
}
