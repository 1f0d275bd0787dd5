import QtQuick
import Lamina

// The measures of an editor, in points of the window: where its paper, its bars and what stands under or beside the
// paper lie.
WorkLayout {
    id: layout

    // Height of what stands under the paper.
    required property real underHeight
    // Where a side panel has room, in the window.
    required property rect sidePlace

    // Upright: the paper takes the window's width but for a margin, which the narrowest windows go without, and leaves
    // the bars and a tray their height.
    readonly property real narrowest: 320
    readonly property real widestMargin: 12
    readonly property real gap: 14
    readonly property real trayHeight: Tokens.bars.tray - Tokens.touch.toolCell + cellHeight
    readonly property real trayRoom: trayHeight + 32
    // What of the room above a tray stands over the paper.
    readonly property real uprightLift: 0.46
    readonly property real tabletSpare: 34
    // A tablet's column is that of the paper, unless that had to be drawn smaller than tools can be.
    readonly property real leastColumn: 360

    // Wide: the paper stands in the room left of the side panel.
    readonly property real wideBars: 132
    readonly property real wideSides: 96
    readonly property real widestPaper: Math.max(760, 0.7 * height)
    readonly property real wideGap: 20
    readonly property real wideFoot: 52
    readonly property real wideLead: 6
    readonly property real wideUnder: 420

    // Lying: what stands beside the paper keeps off the window's edge, and a tray off what is over it.
    readonly property real lyingInset: 20

    // The bar of tools: an icon over a label, which grows with the system's text.
    readonly property real cellHeight: Math.max(Tokens.touch.toolCell, 46 + Math.round(Tokens.type.label.line * Theme.textScale))
    readonly property real toolsHeight: Tokens.bars.tools - Tokens.touch.toolCell + cellHeight

    readonly property real margin: Math.max(0, Math.min(widestMargin, (width - narrowest) / 2))
    readonly property real uprightRoom: height - barHeight - trayRoom - toolsHeight
    readonly property real block: side + gap + underHeight

    uprightSide: tablet ? Math.min(width - 2 * Tokens.layout.tabletMargin, uprightRoom - gap - underHeight - tabletSpare)
                        : Math.min(width - 2 * margin, uprightRoom - gap - underHeight)
    uprightY: Math.round(barHeight + Math.max(0, uprightRoom - block) * uprightLift)
    wideSide: Math.min(height - wideBars - underHeight, width - Tokens.bars.sidePanel - wideSides, widestPaper)
    wideY: Math.round(barHeight + wideLead + Math.max(0, height - barHeight - wideFoot - block - wideLead) / 2)

    // As wide as the paper, unless that had to be drawn smaller.
    readonly property real underWidth: small ? column : lying ? column - lyingInset : wide ? Math.min(wideUnder, side)
        : tablet ? Math.max(side, Math.min(screen.tabletColumn, leastColumn))
        : width - 2 * Math.max(margin, inset)
    readonly property real underX: small ? columnX : lying ? width - underWidth - inset : Math.round((room - underWidth) / 2)
    readonly property real underY: small ? y : lying ? barHeight + inset : y + side + (wide ? wideGap : gap)
    readonly property real underFoot: underY + underHeight

    // The bar that the tools are in: over all of a width, or a tray in a small window's column.
    readonly property real toolsX: beside ? columnX : 0
    readonly property real toolsWidth: beside ? column : width
    // What its cells share, in its middle.
    readonly property real cellsWidth: tablet ? underWidth : toolsWidth - Tokens.space.s
    readonly property real toolsY: height - toolsHeight
    readonly property real smallToolsY: underFoot + inset

    // Where a panel docks. A "tray" stands over the bar of tools, as wide as what is under the paper; a "strip" runs on
    // to the window's edges; a "drawer" lies on the bar. In a small window all of them lie on the tools, in a wide one
    // they are the side panel's content. Their places across don't depend on their heights, which may depend on these.
    function dockX(kind) {
        return wide ? sidePlace.x : kind === "tray" && !small ? underX : toolsX
    }
    function dockWidth(kind) {
        return wide ? sidePlace.width : kind === "tray" && !small ? underWidth : toolsWidth
    }
    // The height of one that would be so high.
    function dockHeight(kind, wanted) {
        const top = small ? smallToolsY : underFoot + Tokens.space.s
        return wide ? sidePlace.height : Math.max(0, Math.min(wanted, dockFoot(kind) - top))
    }
    function dockFoot(kind) {
        return small ? smallFoot : kind === "drawer" ? height : toolsY
    }
    // The top of one that is so high.
    function dockY(kind, height) {
        const room = dockFoot(kind) - height
        if (wide || small || kind === "drawer")
            return wide ? sidePlace.y : room
        const lowest = room - Math.max(0, Math.min(inset, room - underFoot - Tokens.space.s))
        return lying ? Math.min(underFoot + lyingInset, lowest) : lowest
    }

    // Where a notice stands: in the middle of what, how wide, and over what.
    readonly property real noticeMiddle: lying ? columnX + column / 2 : x + side / 2
    readonly property real noticeWidth: lying ? column - 2 * inset : Math.min(Math.max(side, underWidth), width - 2 * inset)
    readonly property real canvasFoot: y + side
}
