import QtQuick
import Lamina

// The frame of a collage: all photos as they came, the border's colour, and how wide the border and the gaps are.
EditorSliders {
    id: panel

    readonly property real cellHeight: layout.cellHeight

    name: "frame"
    heading: qsTranslate("Lamina", "Border and gaps")
    head: ToolRow {
        x: (panel.width - width) / 2
        room: Math.min(panel.width - 2 * Tokens.space.s, 2 * 68 + Tokens.space.xxl)
        spread: true
        perRow: room < 2 * 68 ? 1 : 0
        tools: [
            panel.tool("photosBack", qsTranslate("Lamina", "Photos back"), "Reset"),
            panel.tool("borderColor", qsTranslate("Lamina", "Color"), "Color")
        ]
        swatches: ({ borderColor: panel.controller.borderColor })
        onChosen: identifier => identifier === "photosBack" ? panel.controller.photosBack()
                                                            : panel.controller.adjustBorderColor()
    }

    function tool(identifier, name, icon) {
        return { identifier: identifier, name: name, icon: icon, active: false, gray: false, current: false, enabled: true }
    }
}
