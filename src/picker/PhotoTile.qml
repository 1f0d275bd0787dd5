import QtQuick
import Lamina

// A photo of the contact sheet and, of a chosen one, its frame and its number.
Rectangle {
    id: photo

    required property var theme
    // A YMSPhotoCell; null: none yet.
    required property QtObject cell
    required property var motion
    required property bool settled

    // A tile that was the camera's until now has another cell for a moment.
    readonly property bool unreadable: cell !== null && cell.unreadable === true

    objectName: unreadable || !shown.empty ? "" : "waiting"
    color: unreadable ? Tokens.palette.field : Tokens.palette.paperHud

    Icon {
        anchors.centerIn: parent
        visible: photo.unreadable
        name: photo.unreadable ? "Gallery" : ""
        opacity: Tokens.opacity.disabled
    }
    Picture {
        id: shown
        anchors.fill: parent
        picture: photo.cell ? photo.cell.thumbnailImage : undefined
    }
    Item {
        anchors.fill: parent
        visible: opacity > 0
        opacity: photo.cell ? photo.cell.veilAlpha : 0
        MotionBehavior on opacity {
            motion: photo.motion
            enabled: photo.settled && motion.delay + motion.duration > 0
        }
        Rectangle {
            anchors.fill: parent
            color: "transparent"
            border.width: 4
            border.color: photo.theme.orderTintColor
        }
        Rectangle {
            anchors.right: parent.right
            // A number of three digits, or in large letters, needs more than the square.
            width: Math.max(30, number.implicitWidth + Tokens.space.s)
            height: Math.max(30, number.implicitHeight)
            color: photo.theme.orderTintColor
            StyledText {
                id: number
                anchors.centerIn: parent
                text: photo.cell && photo.cell.selectionOrder ? photo.cell.selectionOrder : ""
                role: ({ size: photo.theme.orderSize, weight: Tokens.type.pickerOrder.weight })
                color: photo.theme.orderLabelTextColor
                wrapMode: Text.NoWrap
                Accessible.ignored: true
            }
        }
    }
}
