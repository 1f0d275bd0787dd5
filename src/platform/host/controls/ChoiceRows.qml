import QtQuick
import Lamina

// Rows of which one is chosen. Arrows go from row to row, and round.
Column {
    id: rows

    required property string name
    property alias model: repeater.model
    property alias delegate: repeater.delegate

    function goTo(index) {
        const row = repeater.itemAt((index + repeater.count) % repeater.count)
        if (row)
            row.forceActiveFocus(Qt.TabFocusReason)
    }

    Accessible.role: Accessible.List
    Accessible.name: name
    Keys.onPressed: event => {
        const pressed = command => KeyTable.find(command, event.key, event.modifiers)
        const row = pressed("row")
        const end = pressed("ends")
        const at = Array.from({ length: repeater.count }, (_, i) => repeater.itemAt(i)).findIndex(item => item.activeFocus)
        event.accepted = row >= 0 || end >= 0
        if (event.accepted)
            goTo(end >= 0 ? -end : row % 2 === 0 ? at - 1 : at + 1)
    }

    Repeater {
        id: repeater
    }
}
