import QtQuick
import QtQuick.Templates as T
import Lamina

// An album in the list: its newest photo, its name, how many there are, and a check on the one in use. What it shows is
// a cell of the controller's, held for as long as the row is in sight.
T.ItemDelegate {
    id: row

    required property int index
    required property var controller
    // Where the list's column stands in the row, which is as wide as the window.
    required property real margin

    property var cell: null
    readonly property var theme: controller.theme
    readonly property real textStart: margin + Tokens.space.l + Tokens.thumbs.album + 14

    Component.onCompleted: cell = controller.cellForRow(index)
    Component.onDestruction: controller.endDisplaying(cell)

    implicitHeight: Math.max(Tokens.touch.albumRow, words.height + Tokens.space.l)
    hoverEnabled: true
    focusPolicy: Qt.ClickFocus
    Accessible.name: cell ? cell.spoken : ""
    Accessible.selectable: true
    Accessible.selected: cell !== null && cell.checked
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Item {
        Rectangle {
            x: row.margin
            width: parent.width - 2 * row.margin
            height: parent.height
            color: row.down ? Tokens.palette.paperHairline : row.hovered ? Tokens.palette.paperSoft : "transparent"
        }
        Rectangle {
            x: row.textStart
            y: parent.height - height
            width: parent.width - row.margin - x
            height: 1
            color: Tokens.palette.paperHairline
        }
        Item {
            anchors.fill: parent
            anchors.leftMargin: row.margin + 2
            anchors.rightMargin: row.margin + 2
            anchors.topMargin: 2
            anchors.bottomMargin: 3
            FocusRing {
                inside: true
                control: row
                radius: Tokens.radius.field
            }
        }
    }
    contentItem: Item {
        Rectangle {
            x: row.margin + Tokens.space.l
            anchors.verticalCenter: parent.verticalCenter
            width: Tokens.thumbs.album
            height: width
            radius: Tokens.radius.thumb
            color: row.cell && row.cell.unreadable ? Tokens.palette.field : thumbnail.empty ? Tokens.palette.paperHud : "transparent"
            Icon {
                anchors.centerIn: parent
                visible: row.cell !== null && row.cell.unreadable
                name: visible ? "Gallery" : ""
                opacity: Tokens.opacity.disabled
            }
            Picture {
                id: thumbnail
                anchors.fill: parent
                picture: row.cell ? row.cell.thumbnailImage : undefined
                radius: Tokens.radius.thumb
            }
        }
        // The count goes under a name that leaves it no room.
        Flow {
            id: words

            x: row.textStart
            width: (check.visible ? check.x - Tokens.space.m : parent.width - row.margin - Tokens.space.l) - x
            anchors.verticalCenter: parent.verticalCenter
            spacing: Math.round(Theme.textSize(row.theme.albumNameSize) * 0.3)
            StyledText {
                width: Math.min(implicitWidth, words.width)
                text: row.cell ? row.cell.albumName : ""
                font.pixelSize: Theme.textSize(row.theme.albumNameSize)
                font.weight: row.theme.albumNameWeight
                role: Tokens.type.pickerAlbum
                color: Tokens.palette.overPaper
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                maximumLineCount: 2
                Accessible.ignored: true
            }
            StyledText {
                visible: text !== ""
                text: row.cell ? row.cell.photosCount : ""
                font.pixelSize: Theme.textSize(row.theme.photosCountSize)
                font.weight: row.theme.photosCountWeight
                role: Tokens.type.pickerAlbum
                color: Tokens.palette.overPaperSecondary
                wrapMode: Text.NoWrap
                Accessible.ignored: true
            }
        }
        Rectangle {
            id: check
            x: parent.width - row.margin - Tokens.space.l - width
            anchors.verticalCenter: parent.verticalCenter
            visible: row.cell !== null && row.cell.checked
            width: 26
            height: width
            radius: width / 2
            color: row.controller.tableTint
            Icon {
                anchors.centerIn: parent
                name: "check"
                size: 18
                tint: row.theme.orderLabelTextColor
            }
        }
    }
}
