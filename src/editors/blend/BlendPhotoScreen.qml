import QtQuick
import Lamina

// Two photos over each other on paper, and the tools round them.
EditorScreen {
    id: blend

    canvasName: qsTranslate("Lamina", "The blend")
    canvasDescription: (controller.photo2OnTop ? qsTranslate("Lamina", "Photo 2 lies over photo 1.")
                                               : qsTranslate("Lamina", "Photo 1 lies over photo 2."))
        + " " + keysHint
    underHeight: selector.height
    hinting: controller.panBool

    readonly property string keysHint: controller.stickerActive
        ? qsTranslate("Lamina", "Arrow keys move the sticker, plus and minus scale it, comma and period turn it, Delete removes it")
        : controller.panBool ? qsTranslate("Lamina", "Arrow keys move the second photo, plus and minus zoom it") : chooseMove
    readonly property string chooseMove: qsTranslate("Lamina", "Choose Move to drag the second photo and to zoom it.")

    // The menu of a photo stands in the place of what the tools open, in a wide window over that.
    readonly property bool asks: controller.menuPhoto > 0
    readonly property string panel: asks && !wide ? "photo" : controller.shownPanel
    sideHead: menuHead.visible ? menuHead.height + Tokens.space.xl : 0

    // Who works by keys is in the menu as it comes, and back at its photo as it goes.
    property bool menuHasKeys: false
    function enterMenu(menu) {
        if (!asks || !Host.focusVisible)
            return
        menu.takeFocus()
        menuHasKeys = true
    }
    onAsksChanged: {
        if (!asks && menuHasKeys)
            selector.takeFocus()
        menuHasKeys = false
    }
    KeyCommand {
        command: "open"
        enabled: blend.activeFocus
        onActivated: blend.controller.openPhoto()
    }
    Keys.onPressed: event => {
        if (KeyTable.find("photoMenu", event.key, event.modifiers) < 0)
            return
        event.accepted = true
        controller.openPhotoMenu(0)
    }

    BlendPhotoButtons {
        id: selector
        stacked: blend.small
        slim: blend.slim
        width: blend.layout.underWidth
        x: blend.layout.underX
        y: blend.layout.underY
        controller: blend.controller
    }

    // What is said of the photos that a tool acts on; nothing where neither is chosen.
    function on(photo1, photo2, title) {
        return photo1 && photo2 ? qsTranslate("Lamina", "%1 on both photos").arg(title)
             : photo1 ? qsTranslate("Lamina", "%1 on photo %2").arg(title).arg(1)
             : photo2 ? qsTranslate("Lamina", "%1 on photo %2").arg(title).arg(2) : title
    }

    panels: [
        EditorHint {
            current: blend.panel
            layout: blend.layout
            heading: qsTranslate("Lamina", "Move")
            text: !blend.controller.panBool
                ? blend.chooseMove
                : Host.mouseAtHand
                ? qsTranslate("Lamina", "Drag the second photo, turn the wheel to zoom it. Arrow keys move it a little, plus and minus zoom.")
                : qsTranslate("Lamina", "Drag the second photo, pinch to zoom it. Arrow keys move it a little, plus and minus zoom.")
        },
        EditorTray {
            name: "tools"
            current: blend.panel
            layout: blend.layout
            // With both on, tools take the second.
            heading: blend.on(blend.controller.photo1Selected && !blend.controller.photo2Selected,
                              blend.controller.photo2Selected, qsTranslate("Lamina", "Tools"))
            tools: blend.controller.subTools
            swatches: ({ color: blend.controller.backdrop })
            onChosen: identifier => blend.controller.chooseSubTool(identifier)
            onHideAsked: blend.controller.toolBtn()
        },
        EditorSliders {
            name: "effects"
            current: blend.panel
            layout: blend.layout
            heading: blend.on(blend.controller.photo1Selected, blend.controller.photo2Selected, qsTranslate("Lamina", "Effects"))
            controller: blend.controller
            onHideAsked: blend.controller.hideFxViewBtnClicked()
        },
        EditorThumbnails {
            name: "stickers"
            current: blend.panel
            layout: blend.layout
            heading: qsTranslate("Lamina", "Stickers")
            thumbnails: blend.controller.stickerStrip
            onChosen: tag => blend.controller.stickerImgGesture(tag)
            onHideAsked: blend.controller.stickerBtn()
        },
        EditorTray {
            id: menuTray
            name: "photo"
            current: blend.panel
            layout: blend.layout
            quick: true
            onVisibleChanged: if (visible) blend.enterMenu(menuTray)
            tools: blend.controller.photoMenu
            onChosen: identifier => blend.controller.choosePhotoAction(identifier)
            onHideAsked: blend.controller.closePhotoMenu()
        },
        Column {
            id: menuHead
            visible: blend.wide && blend.asks
            x: blend.sideRoom.x
            y: blend.sideRoom.y
            width: blend.sideRoom.width
            spacing: Tokens.space.s
            onVisibleChanged: if (visible) blend.enterMenu(menuGrid)
            StyledText {
                width: parent.width
                text: qsTranslate("Lamina", "Photo %1").arg(blend.controller.menuPhoto)
                role: Tokens.type.caption
                strong: true
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            ToolGrid {
                id: menuGrid
                width: parent.width
                height: whole
                oneRow: true
                cellHeight: blend.layout.cellHeight
                tools: blend.controller.photoMenu
                onChosen: identifier => blend.controller.choosePhotoAction(identifier)
            }
        }
    ]
}
