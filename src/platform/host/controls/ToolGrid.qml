import QtQuick
import Lamina

// Tools side by side or, in a narrow place, in rows. Where that is too low they scroll, and end in a cut tool.
ScrollPage {
    id: page

    // As for a ToolRow.
    required property var tools
    property var swatches: ({})
    property real cellHeight: Tokens.touch.toolCell
    // All in one row, however narrow it is; their names get smaller.
    property bool oneRow: false
    signal chosen(string identifier)

    readonly property real padding: Tokens.space.xs
    readonly property real leastCell: 52
    readonly property real slimmest: 100
    // As high as it would be.
    readonly property real whole: rows * pitch + 12
    readonly property real pitch: cellHeight + 6
    readonly property int rows: Math.ceil(tools.length / row.columns)
    readonly property bool fits: height >= whole
    readonly property real shown: height - padding
    // As many whole cells as there is room for, and then a bit more than a half of one.
    readonly property real cutPitch: shown / (Math.max(1, Math.floor(shown / (cellHeight + 2) - 0.6)) + 0.6)
    // In one row where all names can be read there; many tools stand in fours before they stand in twos.
    readonly property int perRow: oneRow ? 0 : width < slimmest ? 1 : holds(tools.length) ? 0 : tools.length > 6 && holds(4) ? 4 : 2

    contentHeight: oneRow ? row.height : row.y + row.height + padding
    clip: interactive
    slack: padding

    // To the tool that is on.
    function takeFocus() {
        row.takeFocus()
    }

    function holds(cells) {
        const each = (width - 2) / Math.max(1, cells)
        return each >= leastCell && labels.widest <= each - Tokens.space.xs / 2
    }

    LabelFit {
        id: labels
        texts: page.tools.map(tool => tool.name)
        room: page.width
        role: Tokens.type.label
        weight: Tokens.type.label.weightActive
    }
    ToolRow {
        id: row
        y: page.fits || page.oneRow ? Math.max(0, (page.height - height) / 2) : page.padding
        x: (page.width - width) / 2
        room: page.width
        spread: true
        perRow: page.perRow
        rowSpacing: (page.fits ? page.pitch : Math.max(page.cellHeight + 2, page.cutPitch)) - page.cellHeight
        tools: page.tools
        swatches: page.swatches
        onChosen: identifier => page.chosen(identifier)
    }
}
