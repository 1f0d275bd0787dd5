import QtQuick
import Lamina

// The two or three slots of a collage: which one the tools and the fingers act on. A slot's button dragged onto another
// one swaps their photos.
Item {
    id: selector

    // A CreateCollageViewController.
    required property var controller
    // In a column as wide as one of them they stand one above the other.
    property bool stacked: false
    // How much the current one calls for the eye, 0 to 1.
    property real call: 0

    readonly property int count: controller.photoCount
    readonly property real share: (width - (count - 1) * Tokens.space.s) / count
    // Where there is room for the pictures alone, little is between them.
    readonly property bool slim: stacked || share < 64
    readonly property real buttonWidth: stacked ? Tokens.bars.selector
        : slim ? Math.max(Tokens.touch.minimum, Math.min(Tokens.bars.selector, (width - (count - 1) * grid.spacing) / count)) : share

    // While one is dragged: its row, and that of the one it is held over; -1: none.
    property int held: -1
    property int over: -1

    function rowAt(place) {
        for (let row = 0; row < buttons.count; ++row) {
            const button = buttons.itemAt(row)
            if (button.contains(button.mapFromItem(null, place)))
                return row
        }
        return -1
    }
    function drag(row, place) {
        const under = rowAt(place)
        const spot = mapFromItem(null, place)
        held = row
        over = under === row ? -1 : under
        ghost.x = spot.x - ghost.width / 2
        ghost.y = spot.y - ghost.height / 2
    }
    function drop() {
        const from = held
        const to = over
        held = -1
        over = -1
        if (from >= 0 && to >= 0)
            controller.swapSlots(from + 1, to + 1)
    }

    implicitHeight: grid.implicitHeight
    z: held >= 0 ? 1 : 0

    Grid {
        id: grid
        columns: selector.stacked ? 1 : selector.count
        x: selector.slim ? Math.round((selector.width - width) / 2) : 0
        spacing: selector.slim && !selector.stacked ? 2 : Tokens.space.s

        Repeater {
            id: buttons
            // The count alone: a button outlives a change of its slot, and keeps the keyboard and the finger.
            model: selector.count
            delegate: SlotButton {
                required property int index
                width: selector.buttonWidth
                slot: selector.controller.slots[index]
                slim: selector.slim
                dimmed: selector.held === index
                wanted: selector.over === index
                call: selected ? selector.call : 0
                onClicked: selector.controller.selectSlot(index + 1)
                onDraggedTo: place => selector.drag(index, place)
                onDropped: selector.drop()
                onDragEnded: selector.held = selector.over = -1
            }
        }
    }
    Picture {
        id: ghost
        visible: selector.held >= 0
        width: Tokens.bars.selector
        height: width
        radius: Tokens.radius.thumb
        picture: selector.held >= 0 ? selector.controller.slots[selector.held].picture : undefined
    }
}
