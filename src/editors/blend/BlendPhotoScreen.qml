import QtQuick
import Lamina

// Two photos over each other on paper, and the tools round them.
EditorScreen {
    id: blend

    canvasName: qsTranslate("Lamina", "The blend")
    canvasDescription: (controller.photo2OnTop ? qsTranslate("Lamina", "Photo 2 lies over photo 1.")
                                               : qsTranslate("Lamina", "Photo 1 lies over photo 2."))
        + " " + qsTranslate("Lamina", "Arrow keys move the second photo, plus and minus zoom it")
    underHeight: selector.height

    BlendPhotoButtons {
        id: selector
        width: blend.layout.underWidth
        x: blend.layout.underX
        y: blend.layout.underY
        controller: blend.controller
    }

    HintPill {
        readonly property real space: blend.toolsTop - selector.y - selector.height
        visible: !blend.wide && opacity > 0 && space >= implicitHeight
        width: Math.min(implicitWidth, selector.width)
        x: selector.x + (selector.width - width) / 2
        y: selector.y + selector.height + (space - height) / 2
        shown: blend.controller.panBool && !blend.controller.edited
        text: qsTranslate("Lamina", "Drag to move, pinch to zoom")
    }

    panelContent: [
        StyledText {
            width: parent ? parent.width : 0
            text: qsTranslate("Lamina", "Move")
            role: Tokens.type.caption
            strong: true
            Accessible.role: Accessible.Heading
            Accessible.name: text
        },
        StyledText {
            width: parent ? parent.width : 0
            text: qsTranslate("Lamina", "Drag the second photo, pinch or turn the wheel to zoom it. Arrow keys move it a little, plus and minus zoom.")
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            Accessible.name: text
        }
    ]
}
