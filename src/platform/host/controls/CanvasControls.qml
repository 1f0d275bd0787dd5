import QtQuick
import Lamina

// The elements of a canvas's tree for those who can't see them, and for keys: an unseen item over each. Fingers and
// mouse go through to the tree.
Repeater {
    id: controls

    // A WorkCanvas, which these stand in.
    required property Item canvas
    // Asked first at every key, with the tag of the view that has the focus: whether it means something else there.
    property var takesKey: (tag, event) => false

    model: canvas.elements

    Item {
        id: element

        required property int index
        required property var info
        // As sliders have them.
        readonly property var value: info.value
        readonly property var minimumValue: info.minimum
        readonly property var maximumValue: info.maximum
        readonly property bool operable: info.button || info.adjustable

        x: info.frame.x * controls.canvas.width
        y: info.frame.y * controls.canvas.height
        width: info.frame.width * controls.canvas.width
        height: info.frame.height * controls.canvas.height
        enabled: info.available
        activeFocusOnTab: operable

        Accessible.role: info.adjustable ? Accessible.Slider : info.button ? Accessible.Button
                       : info.image ? Accessible.Graphic : info.text ? Accessible.StaticText : Accessible.Grouping
        Accessible.name: info.label
        Accessible.description: Theme.spoken(info.description, info.available)
        Accessible.focusable: operable
        Accessible.selected: info.selected
        Accessible.onPressAction: controls.model.activate(index)
        Accessible.onIncreaseAction: controls.model.increment(index)
        Accessible.onDecreaseAction: controls.model.decrement(index)

        Keys.onPressed: event => {
            event.accepted = controls.takesKey(info.tag, event)
            if (event.accepted)
                return
            const way = KeyTable.find("move", event.key, event.modifiers)
            const zoom = KeyTable.find("zoom", event.key, event.modifiers)
            const up = way === 1 || way === 2 || zoom === 0 || zoom === 2
            const down = way === 0 || way === 3 || zoom === 1
            const press = [" ", "\r", "\n"].includes(event.text)
            event.accepted = info.adjustable && (up || down) || info.button && press
            if (!event.accepted)
                return
            // A key that is still held from before presses nothing here.
            if (press && !event.isAutoRepeat)
                controls.model.activate(index)
            else if (press)
                return
            else if (up)
                controls.model.increment(index)
            else
                controls.model.decrement(index)
        }

        FocusRing {
            control: element
            radius: element.info.roundness * Math.min(element.width, element.height)
        }
    }
}
