import QtQuick
import Lamina

// An editor's tools beside a wide window's canvas: the tools in a row, what the active one has to say, and Save at the
// foot.
SidePanel {
    id: panel

    // An EditorViewController.
    required property var controller
    default property alias content: page.data

    ToolRow {
        id: tools
        y: 14
        anchors.horizontalCenter: parent.horizontalCenter
        room: parent.width - 2 * Tokens.space.s
        columnSpacing: 5
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
    ScrollPage {
        x: Tokens.space.sheetMargin
        y: rule.y + Tokens.space.xl
        width: parent.width - 2 * Tokens.space.sheetMargin
        height: save.y - y - Tokens.space.m
        contentHeight: page.height
        clip: interactive
        Column {
            id: page
            width: parent.width
            spacing: Tokens.space.s
        }
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
