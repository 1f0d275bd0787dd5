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
        stacked: blend.small
        slim: blend.slim
        width: blend.layout.underWidth
        x: blend.layout.underX
        y: blend.layout.underY
        controller: blend.controller
    }

    HintPill {
        readonly property real space: blend.toolsTop - blend.layout.underFoot
        visible: !blend.wide && opacity > 0 && space >= height + 2 * Tokens.space.s
        room: selector.width
        x: selector.x + (selector.width - width) / 2
        y: blend.layout.underFoot + (space - height) / 2
        shown: blend.controller.panBool && !blend.controller.edited && blend.controller.notice === ""
        text: blend.gestureHint
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
            text: Host.mouseAtHand
                ? qsTranslate("Lamina", "Drag the second photo, turn the wheel to zoom it. Arrow keys move it a little, plus and minus zoom.")
                : qsTranslate("Lamina", "Drag the second photo, pinch to zoom it. Arrow keys move it a little, plus and minus zoom.")
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            Accessible.name: text
        }
    ]
}
