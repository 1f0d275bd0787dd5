import QtQuick
import Lamina

// All keys, by what they are for. It is only read.
Column {
    id: list

    spacing: Tokens.space.m

    Repeater {
        model: KeyTable.groups
        delegate: Column {
            id: group
            required property var modelData
            width: list.width
            StyledText {
                width: parent.width
                bottomPadding: Tokens.space.xs
                text: group.modelData.title
                role: Tokens.type.caption
                color: Tokens.palette.textSecondary
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Repeater {
                model: group.modelData.rows
                delegate: Item {
                    id: row
                    required property var modelData
                    required property int index
                    width: group.width
                    height: Math.max(32, caps.height + Tokens.space.s, text.height + Tokens.space.s)
                    Accessible.role: Accessible.StaticText
                    Accessible.name: modelData.text
                    Accessible.description: modelData.caps.map(cap => cap.text).join(" ")
                    Rectangle {
                        visible: row.index > 0
                        width: parent.width
                        height: 1
                        color: Tokens.palette.hairline
                    }
                    StyledText {
                        id: text
                        anchors.left: parent.left
                        anchors.right: caps.left
                        anchors.rightMargin: Tokens.space.s
                        anchors.verticalCenter: parent.verticalCenter
                        text: row.modelData.text
                        Accessible.ignored: true
                    }
                    KeyCaps {
                        id: caps
                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        command: row.modelData.command
                    }
                }
            }
        }
    }
}
