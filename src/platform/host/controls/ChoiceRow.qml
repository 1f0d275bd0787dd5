import QtQuick
import Lamina

// One of several choices: what it is called, what it is good for, and a check where it is the one in use.
ListRow {
    id: row

    required property string name
    property string info
    // Empty: no tile.
    property string iconName
    property bool suggested: false
    property bool marked: false

    lit: marked
    implicitHeight: Math.max(Tokens.touch.listRow, words.height + Tokens.space.l)
    Accessible.name: name
    Accessible.selectable: true
    Accessible.selected: marked
    Accessible.description: [marked ? qsTranslate("Lamina", "Chosen") : "", suggested ? mark.text : "", info]
        .filter(text => text !== "").join(". ")

    contentItem: Item {
        Rectangle {
            id: tile
            visible: row.iconName !== ""
            x: Tokens.space.sheetMargin
            anchors.verticalCenter: parent.verticalCenter
            width: visible ? 40 : 0
            height: 40
            radius: Tokens.radius.iconTile
            color: Tokens.palette.cell
            Icon {
                anchors.centerIn: parent
                name: row.iconName
            }
        }
        Column {
            id: words
            anchors.left: tile.right
            anchors.leftMargin: tile.visible ? 14 : 0
            anchors.right: parent.right
            anchors.rightMargin: Tokens.space.sheetMargin + (row.marked ? check.width + Tokens.space.s : 0)
            anchors.verticalCenter: parent.verticalCenter
            Flow {
                width: parent.width
                spacing: Tokens.space.s
                StyledText {
                    width: Math.min(implicitWidth, parent.width)
                    text: row.name
                    strong: row.info !== ""
                    Accessible.ignored: true
                }
                SuggestedMark {
                    id: mark
                    visible: row.suggested
                }
            }
            StyledText {
                width: parent.width
                visible: text !== ""
                text: row.info
                role: Tokens.type.caption
                color: Tokens.palette.textSecondary
                Accessible.ignored: true
            }
        }
        Icon {
            id: check
            anchors.right: parent.right
            anchors.rightMargin: Tokens.space.sheetMargin
            anchors.verticalCenter: parent.verticalCenter
            visible: row.marked
            name: "check_accent"
        }
    }
}
