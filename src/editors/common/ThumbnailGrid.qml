import QtQuick
import Lamina

// Thumbnails in columns that scroll, named to a pointer that rests. One stop for the keyboard, with arrows inside.
GridView {
    id: grid

    required property string name
    signal chosen(int tag)

    // Kept free at the left and over it for the ring of the focus; a cell ends in a gap.
    readonly property real slack: Tokens.space.xs
    readonly property real gap: Tokens.space.s
    readonly property int columns: Math.max(1, Math.ceil((width - slack) / (Tokens.thumbs.sticker + gap)))
    readonly property real side: cellWidth - gap

    function goTo(cell) {
        currentIndex = Math.max(0, Math.min(cell, count - 1))
        positionViewAtIndex(currentIndex, GridView.Contain)
    }

    leftMargin: slack
    cellWidth: Math.floor((width - slack) / columns)
    cellHeight: cellWidth
    clip: true
    reuseItems: true
    boundsBehavior: Flickable.StopAtBounds
    focus: true
    activeFocusOnTab: true
    keyNavigationEnabled: false
    highlightMoveDuration: 0
    Accessible.role: Accessible.List
    Accessible.name: name
    header: Item { height: grid.slack }
    onCountChanged: if (currentIndex < 0) currentIndex = 0

    Keys.onPressed: event => {
        const page = columns * Math.max(1, Math.floor(height / cellHeight) - 1)
        const places = { row: [-columns, columns, -1, 1], page: [-page, page], ends: [-count, count] }
        for (const command in places) {
            const by = places[command][KeyTable.find(command, event.key, event.modifiers)]
            event.accepted = by !== undefined
            // Up and down stay in their column.
            const stays = command === "row" && Math.abs(by) === columns && (currentIndex + by < 0 || currentIndex + by >= count)
            if (event.accepted)
                return goTo(currentIndex + (stays ? 0 : by))
        }
    }

    delegate: ThumbnailButton {
        width: grid.side
        height: grid.side
        named: true
        focus: GridView.isCurrentItem
        onClicked: {
            grid.currentIndex = index
            grid.chosen(tag)
        }
    }
}
