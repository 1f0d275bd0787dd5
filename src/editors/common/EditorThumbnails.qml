import QtQuick
import Lamina

// Pictures to choose from: a strip over the bar of tools, or a grid in the side panel and in place of the tools.
EditorPanel {
    id: panel

    // Rows of {tag, name, picture}; null: none yet.
    required property var thumbnails
    property ThumbnailStyle style: ThumbnailStyle {}
    // Row of the one in force; -1: none.
    property int marked: -1
    signal chosen(int tag)

    // Over and under the strip, for the ring of the focus.
    readonly property real slack: Tokens.space.s

    kind: "strip"
    wanted: layout.small ? layout.height : style.side + style.captionHeight

    // Nothing is made of a panel that is not seen.
    Loader {
        id: loader
        readonly property bool grid: panel.layout.wide || panel.layout.small
        readonly property real sides: panel.layout.wide ? -panel.style.gridSlack : panel.layout.small ? Tokens.space.xs : 0
        active: panel.visible
        x: sides
        y: grid ? sides : -panel.slack
        width: parent.width - x + (panel.layout.wide ? panel.style.gridGap : 0)
        height: parent.height - y + (grid ? 0 : panel.slack)
        sourceComponent: grid ? columns : row
    }
    Component {
        id: row
        ThumbnailStrip {
            name: panel.heading
            model: panel.thumbnails
            lead: panel.layout.underX - panel.x
            side: panel.height - panel.style.captionHeight
            style: panel.style
            marked: panel.marked
            onChosen: tag => panel.chosen(tag)
        }
    }
    Component {
        id: columns
        ThumbnailGrid {
            name: panel.heading
            model: panel.thumbnails
            style: panel.style
            marked: panel.marked
            onChosen: tag => panel.chosen(tag)
        }
    }
}
