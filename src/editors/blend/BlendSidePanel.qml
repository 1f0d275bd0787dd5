import QtQuick
import Lamina

// The blend's tools beside a wide window's canvas: the tools in a row, what the active one has to say, and Save at the foot.
SidePanel {
    id: panel

    // A BlendPhotoViewController.
    required property var controller
    signal chosen(int tool)

    // Where a notice may stand: over the foot.
    readonly property real foot: save.y

    ToolRow {
        id: tools
        y: 14
        anchors.horizontalCenter: parent.horizontalCenter
        room: parent.width - 2 * Tokens.space.s
        spacing: 5
        tools: panel.controller.tools
        onChosen: index => panel.chosen(index)
    }
    Rectangle {
        id: rule
        y: tools.y + tools.height + 10
        width: parent.width
        height: 1
        color: Tokens.palette.hairline
    }
    Column {
        x: Tokens.space.sheetMargin
        y: rule.y + Tokens.space.xl
        width: parent.width - 2 * Tokens.space.sheetMargin
        spacing: Tokens.space.s
        StyledText {
            width: parent.width
            text: qsTranslate("Lamina", "Move")
            role: Tokens.type.caption
            strong: true
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        StyledText {
            width: parent.width
            text: qsTranslate("Lamina", "Drag the second photo, pinch or turn the wheel to zoom it. Arrow keys move it a little, plus and minus zoom.")
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            Accessible.name: text
        }
    }
    LaminaButton {
        id: save
        x: Tokens.space.sheetMargin
        width: parent.width - 2 * Tokens.space.sheetMargin
        y: parent.height - height - Tokens.space.sheetMargin
        text: qsTranslate("Lamina", "Save")
        enabled: !panel.controller.saving
        onClicked: panel.controller.shareBtn()
    }
}
