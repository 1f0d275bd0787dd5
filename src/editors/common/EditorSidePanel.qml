import QtQuick
import Lamina

// An editor's tools beside a wide window's canvas: the tools in a row, room for what the active one opens, and Save at
// the foot.
SidePanel {
    id: panel

    // An EditorViewController.
    required property var controller
    // The room, in the panel's own coordinates.
    readonly property rect place: Qt.rect(Tokens.space.sheetMargin, rule.y + Tokens.space.xl,
        width - 2 * Tokens.space.sheetMargin, save.y - rule.y - Tokens.space.xl - Tokens.space.m)

    ToolRow {
        id: tools
        y: 14
        anchors.horizontalCenter: parent.horizontalCenter
        room: parent.width - 2 * Tokens.space.s
        widestGap: 5
        tools: panel.controller.tools
        onChosen: identifier => panel.controller.chooseTool(identifier)
    }
    Rectangle {
        id: rule
        y: tools.y + tools.height + 10
        width: parent.width
        height: 1
        color: Tokens.palette.hairline
    }
    LaminaButton {
        id: save
        x: Tokens.space.sheetMargin
        width: parent.width - 2 * Tokens.space.sheetMargin
        y: parent.height - height - Tokens.space.sheetMargin
        text: qsTranslate("Lamina", "Save")
        onClicked: panel.controller.shareBtn()
    }
}
