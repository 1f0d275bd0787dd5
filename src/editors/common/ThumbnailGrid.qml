import QtQuick
import Lamina

// Thumbnails in columns that scroll.
TileGrid {
    id: grid

    property ThumbnailStyle style: ThumbnailStyle {}
    // Row of the one in force; -1: none.
    property int marked: -1
    signal chosen(int tag)

    // Kept free at the left and over it for the rings; a cell ends in a gap.
    readonly property real slack: style.gridSlack
    readonly property real gap: style.gridGap
    // In the narrowest column the gap gives way to a finger.
    readonly property real side: Math.max(Tokens.touch.minimum, cellWidth - gap)

    columns: Math.max(1, Math.ceil((width - slack - gap) / (Tokens.thumbs.sticker + Tokens.space.s)))
    leftMargin: slack
    cellWidth: Math.floor((width - slack) / columns)
    cellHeight: cellWidth + style.captionHeight
    clip: true
    header: Item { height: grid.slack }
    // What came in force by other ways is brought into sight.
    onMarkedChanged: if (marked >= 0) goTo(marked)
    // Once it has its height.
    Component.onCompleted: if (marked > 0) Qt.callLater(goTo, marked)

    delegate: ThumbnailButton {
        width: grid.side
        height: grid.side + grid.style.captionHeight
        style: grid.style
        marked: index === grid.marked
        tipped: !style.captioned
        focus: GridView.isCurrentItem
        onClicked: {
            grid.currentIndex = index
            grid.chosen(tag)
        }
    }
}
