import QtQuick
import Lamina

// Two or three photos in the slots of a frame, and the tools round them.
EditorScreen {
    id: collage

    readonly property int slot: controller.currentSlot
    // The panel that the editor opens with. A small window's tools come first: there it would lie on them, and waits to
    // be asked for.
    readonly property string opening: "tools"
    property bool asked: false
    readonly property string panel: small && !asked ? "" : controller.shownPanel

    canvasName: qsTranslate("Lamina", "The collage")
    canvasDescription: qsTranslate("Lamina", "Photo %1 of %2 is in hand.").arg(slot).arg(controller.photoCount) + " " + keysHint
    underHeight: selector.height
    toolCommand: "collageTool"
    hint: Host.mouseAtHand ? qsTranslate("Lamina", "Drag to move, turn the wheel to zoom, with Shift to turn")
                           : qsTranslate("Lamina", "Drag to move, pinch to zoom, twist to turn")
    hinting: panel === "" || panel === opening

    readonly property string keysHint: controller.stickerActive
        ? qsTranslate("Lamina", "Arrow keys move the sticker, plus and minus scale it, comma and period turn it, Delete removes it")
        : qsTranslate("Lamina", "Arrow keys move the photo, plus and minus zoom it, comma and period turn it, digits choose another one")

    // The photo in hand fits its slot again, however it lay.
    function bringBack() {
        controller.fitPhoto()
    }
    function doubleTap(x, y) {
        controller.doubleTapCanvas(x, y)
    }
    function chooseTool(identifier) {
        asked = true
        controller.chooseTool(identifier)
    }
    function stepBack() {
        if (panel !== controller.shownPanel)
            controller.hidePanel()
        return controller.letGo()
    }

    Keys.onPressed: event => {
        const chosen = KeyTable.find("slot", event.key, event.modifiers) + 1
        const swap = KeyTable.find("swapPhotos", event.key, event.modifiers)
        event.accepted = event.accepted || chosen > 0 || swap >= 0
        if (chosen > 0 && chosen <= controller.photoCount)
            controller.selectSlot(chosen)
        if (swap >= 0)
            controller.swapWithNeighbour(swap === 0 ? -1 : 1)
    }
    KeyCommand {
        command: "open"
        enabled: collage.activeFocus
        onActivated: collage.controller.chooseTool("gallery")
    }

    CollageSlots {
        id: selector
        stacked: collage.slim
        width: collage.layout.underWidth
        height: implicitHeight
        x: collage.layout.underX
        y: collage.layout.underY
        call: pointer.call
        controller: collage.controller
    }
    SlotPointer {
        id: pointer
        x: collage.layout.x
        y: collage.layout.y
        width: collage.layout.side
        height: width
        controller: collage.controller
    }
    Connections {
        target: collage.controller
        function onPointedOut() {
            pointer.pointOut()
        }
        function onPanelsChanged() {
            if (collage.controller.shownPanel !== collage.opening)
                collage.asked = true
        }
    }
    BusyMark {
        x: collage.layout.x + (collage.layout.side - width) / 2
        y: collage.layout.y + (collage.layout.side - height) / 2
        // A finger is shown what it does, and the window's own panel says enough.
        running: collage.controller.busy && !effects.sliding && !Host.progress.blocking
        text: qsTranslate("Lamina", "The photo is being changed")
    }

    function on(title) {
        return qsTranslate("Lamina", "%1 on photo %2").arg(title).arg(slot)
    }

    panels: [
        EditorHint {
            id: hint
            current: collage.panel
            layout: collage.layout
            heading: qsTranslate("Lamina", "Photo %1").arg(collage.slot)
            text: Host.mouseAtHand
                ? qsTranslate("Lamina", "Drag the photo, turn the wheel to zoom it, with Shift to turn it. A double click fits it to its slot again. The button of a photo, dragged onto another one, swaps the two.")
                : qsTranslate("Lamina", "Drag the photo, pinch to zoom it, twist to turn it. A double tap fits it to its slot again. The button of a photo, dragged onto another one, swaps the two.")
        },
        EditorThumbnails {
            name: "layout"
            current: collage.panel
            layout: collage.layout
            heading: qsTranslate("Lamina", "Layout")
            thumbnails: collage.controller.layouts
            marked: collage.controller.layoutRow
            style: ThumbnailStyle {
                side: Tokens.thumbs.layout
                gap: 10
                cutOut: false
                marks: true
            }
            onChosen: tag => collage.controller.imgGesture1(tag)
            onHideAsked: collage.controller.letGo()
        },
        EditorTray {
            name: "tools"
            current: collage.panel
            layout: collage.layout
            heading: collage.on(qsTranslate("Lamina", "Tools"))
            hint: collage.controller.edited ? "" : hint.text
            tools: collage.controller.subTools
            swatches: ({ color: collage.controller.slotColor })
            onChosen: identifier => collage.controller.chooseSubTool(identifier)
            onHideAsked: collage.controller.letGo()
        },
        EditorThumbnails {
            name: "filter"
            current: collage.panel
            layout: collage.layout
            heading: collage.on(qsTranslate("Lamina", "Filter"))
            thumbnails: collage.controller.filters
            marked: collage.controller.filterRow
            style: ThumbnailStyle {
                side: Tokens.thumbs.filter
                gap: 10
                cutOut: false
                edged: true
                marks: true
                captioned: true
            }
            onChosen: tag => collage.controller.filterImgGesture(tag)
            onHideAsked: collage.controller.letGo()
        },
        EditorSliders {
            id: effects
            name: "effects"
            current: collage.panel
            layout: collage.layout
            heading: collage.on(qsTranslate("Lamina", "Effects"))
            controller: collage.controller
            onHideAsked: collage.controller.hideFxViewBtnClicked()
        },
        EditorThumbnails {
            name: "stickers"
            current: collage.panel
            layout: collage.layout
            heading: qsTranslate("Lamina", "Stickers")
            thumbnails: collage.controller.stickerStrip
            style: ThumbnailStyle { side: Tokens.thumbs.collageSticker }
            onChosen: tag => collage.controller.stickerImgGesture(tag)
            onHideAsked: collage.controller.letGo()
        },
        CollageFramePanel {
            current: collage.panel
            layout: collage.layout
            controller: collage.controller
            onHideAsked: collage.controller.letGo()
        }
    ]
}
