import QtQuick
import Lamina

// Tiles in columns that scroll. One stop for the keyboard, with arrows inside: another tile, a page, the ends.
GridView {
    id: grid

    required property string name
    required property int columns
    // In sight at once, but for one for the eye to hold on to.
    property int pageRows: Math.max(1, Math.floor(height / cellHeight) - 1)

    // Brings a tile into sight, whole.
    function reveal(item) {
        positionViewAtIndex(item, GridView.Contain)
    }
    function goTo(item) {
        const next = Math.max(0, Math.min(item, count - 1))
        reveal(next) // first: the view would bring it into sight in its own way
        currentIndex = next
    }

    reuseItems: true
    boundsBehavior: Flickable.StopAtBounds
    focus: true
    activeFocusOnTab: true
    keyNavigationEnabled: false
    highlightMoveDuration: 0
    Accessible.role: Accessible.List
    Accessible.name: name
    onCountChanged: if (currentIndex < 0) currentIndex = 0

    Keys.onPressed: event => {
        const page = columns * pageRows
        const places = { row: [-columns, columns, -1, 1], page: [-page, page], ends: [-count, count] }
        for (const command in places) {
            const by = places[command][KeyTable.find(command, event.key, event.modifiers)]
            if (by === undefined)
                continue
            // Up and down stay in their column.
            const stays = command === "row" && Math.abs(by) === columns && (currentIndex + by < 0 || currentIndex + by >= count)
            event.accepted = true
            return goTo(currentIndex + (stays ? 0 : by))
        }
    }
}
