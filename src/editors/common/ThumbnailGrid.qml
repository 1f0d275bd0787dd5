import QtQuick
import Lamina

// Thumbnails in columns that scroll, named to a pointer that rests.
TileGrid {
    id: grid

    signal chosen(int tag)

    // Kept free at the left and over it for the ring of the focus; a cell ends in a gap.
    readonly property real slack: Tokens.space.xs
    readonly property real gap: Tokens.space.s
    readonly property real side: cellWidth - gap

    columns: Math.max(1, Math.ceil((width - slack) / (Tokens.thumbs.sticker + gap)))
    leftMargin: slack
    cellWidth: Math.floor((width - slack) / columns)
    cellHeight: cellWidth
    clip: true
    header: Item { height: grid.slack }

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
