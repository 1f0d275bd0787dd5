import QtQuick
import Lamina

// A line of a folder: a small picture or an icon, and the name.
ListRow {
    id: row

    required property string name
    property string iconName
    property string thumbnail
    property bool forward: false
    property bool turned: false
    // Only the name, as an answer of a sheet.
    property bool plain: false
    property bool danger: false
    // One of a list's rows, not an answer.
    property bool listed: false

    Accessible.name: name
    Accessible.selectable: listed
    Accessible.selected: listed && activeFocus
    Accessible.description: forward ? qsTranslate("Lamina", "Folder") : ""

    contentItem: Item {
        Rectangle {
            id: tile
            visible: !row.plain
            x: Tokens.space.sheetMargin
            anchors.verticalCenter: parent.verticalCenter
            width: 40
            height: 40
            radius: Tokens.radius.iconTile
            color: Tokens.palette.field
            Icon {
                anchors.centerIn: parent
                name: row.iconName !== "" ? row.iconName : "Gallery"
                rotation: row.turned ? 180 : 0
                opacity: row.iconName !== "" ? 1 : Tokens.opacity.disabled
                visible: picture.status !== Image.Ready
            }
            Image {
                id: picture
                anchors.fill: parent
                source: row.thumbnail === "" ? "" : "image://thumbnail/" + encodeURIComponent(row.thumbnail)
                sourceSize: Qt.size(width * Screen.devicePixelRatio, height * Screen.devicePixelRatio)
                asynchronous: true
                cache: false
            }
        }
        StyledText {
            anchors.left: row.plain ? parent.left : tile.right
            anchors.leftMargin: row.plain ? Tokens.space.sheetMargin : Tokens.space.m
            anchors.right: more.left
            anchors.verticalCenter: parent.verticalCenter
            text: row.name
            maximumLineCount: 1
            elide: Text.ElideMiddle
            wrapMode: Text.NoWrap
            color: row.danger ? Tokens.palette.danger : Tokens.palette.text
        }
        Icon {
            id: more
            anchors.right: parent.right
            anchors.rightMargin: Tokens.space.l
            anchors.verticalCenter: parent.verticalCenter
            name: "forward"
            visible: row.forward
            opacity: 0.6
        }
    }
}
