import QtQuick
import Lamina

// Chooses one slot of a collage: its photo, its number, and the frame with this slot lit. Dragged onto another one it
// swaps the two photos.
SelectorButton {
    id: button

    // Of {number, name, picture, opacity, background, icon, iconSelected, selected}.
    required property var slot
    readonly property bool roomy: width >= 110
    readonly property real iconSide: 22
    // In the window.
    signal draggedTo(point place)
    signal dropped()
    signal dragEnded()

    name: slot.name
    picture: slot.picture
    pictureOpacity: slot.opacity
    ground: slot.background
    selected: slot.selected
    badge: slot.number
    // Pressed for long it does what a press does.
    onHeld: clicked()
    textHeight: number.lineHeight
    handlers: DragHandler {
        target: null
        onCentroidChanged: if (active) button.draggedTo(centroid.scenePosition)
        onCanceled: button.dragEnded()
        onGrabChanged: (transition, point) => {
            if (transition === PointerDevice.UngrabExclusive)
                button.dropped()
        }
    }

    StyledText {
        id: number
        x: button.roomy ? 10 : Tokens.space.s
        anchors.verticalCenter: parent.verticalCenter
        text: button.slot.number
        role: Tokens.type.caption
        strong: true
        color: button.selected ? Tokens.palette.overAccent : Tokens.palette.text
        opacity: button.selected ? 1 : 0.8
        Accessible.ignored: true
    }
    Picture {
        visible: x >= number.x + number.width + Tokens.space.xs
        x: parent.width - width - (button.roomy ? 14 : Tokens.space.s)
        anchors.verticalCenter: parent.verticalCenter
        width: button.iconSide
        height: width
        cutOut: true
        picture: button.selected ? button.slot.iconSelected : button.slot.icon
    }
}
