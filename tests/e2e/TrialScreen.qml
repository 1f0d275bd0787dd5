import QtQuick
import Lamina

AppScreen {
    id: trial

    Repeater {
        model: trial.controller.formats
        delegate: Item {
            required property string label
            Accessible.name: label
        }
    }
    Rectangle {
        readonly property rect place: trial.controller.panel.value
        y: place.y
        width: place.width
        Accessible.name: "Panel"
        MotionBehavior on y { motion: trial.controller.panel }
    }
}
