import QtQuick
import QtQuick.Templates as T
import Lamina

// A list of rows that scrolls, by keys too: another row, a page, the ends, and by the first letters of a name.
ListView {
    id: list

    required property string name
    // The row for what was typed further, from the current one on; -1: none.
    property var rowForTyping: (text, current) => -1

    readonly property real rowHeight: currentItem ? currentItem.height : Tokens.touch.listRow
    readonly property int pageRows: Math.max(1, Math.floor((height - topMargin) / rowHeight) - 1)
    // Not where the list holds more than its rows.
    property bool scrollBar: true
    // Somebody came to another row by keys.
    signal wentTo(int row)

    // Always whole in sight, and nothing is current in an empty list.
    function goTo(row) {
        currentIndex = Math.max(0, Math.min(row, count - 1))
        positionViewAtIndex(currentIndex, ListView.Contain)
        wentTo(currentIndex)
    }

    boundsBehavior: Flickable.StopAtBounds
    focus: true
    activeFocusOnTab: true
    keyNavigationEnabled: false
    highlightMoveDuration: 0
    Accessible.role: Accessible.List
    Accessible.name: name
    onCountChanged: if (currentIndex < 0) currentIndex = 0

    Keys.onPressed: event => {
        const pressed = command => KeyTable.find(command, event.key, event.modifiers)
        const places = { row: [currentIndex - 1, currentIndex + 1],
                         page: [currentIndex - pageRows, currentIndex + pageRows],
                         ends: [0, count - 1] }
        const command = Object.keys(places).find(name => places[name][pressed(name)] !== undefined)
        const found = command === undefined && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier))
            ? rowForTyping(event.text, currentIndex) : -1
        event.accepted = command !== undefined || found >= 0
        if (event.accepted)
            goTo(command !== undefined ? places[command][pressed(command)] : found)
    }

    T.ScrollBar.vertical: ThinScrollBar { visible: list.scrollBar && size < 1 }
}
