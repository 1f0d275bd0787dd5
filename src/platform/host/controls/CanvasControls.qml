import QtQuick
import Lamina

// The elements of a canvas's tree for those who can't see them, and for keys: an unseen item over each. Fingers and
// mouse go through to the tree.
Repeater {
    id: controls

    // A WorkCanvas, which these stand in.
    required property Item canvas

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
            const up = event.key === Qt.Key_Right || event.key === Qt.Key_Up || event.key === Qt.Key_Plus
            const down = event.key === Qt.Key_Left || event.key === Qt.Key_Down || event.key === Qt.Key_Minus
            const press = event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter
            event.accepted = info.adjustable && (up || down) || info.button && press
            if (!event.accepted)
                return
            if (press)
                controls.model.activate(index)
            else if (up)
                controls.model.increment(index)
            else
                controls.model.decrement(index)
        }

        FocusRing {
            control: element
        }
    }
}
