import QtQuick
import Lamina

// The measures of an editor, in points of the window: where its paper, its bars and what stands under the paper lie in an
// upright, a lying and a wide window.
QtObject {
    id: layout

    // The AppScreen that is laid out.
    required property var screen
    // Heights of the bar over the paper and of what stands under it.
    required property real barHeight
    required property real underHeight

    // Upright: the paper takes the window's width but for a margin, which the narrowest windows go without, and leaves the
    // bars their height.
    readonly property real narrowest: 320
    readonly property real widestMargin: 12
    readonly property real uprightBars: 248
    readonly property real uprightGap: 14
    // The part of the room above the tools, and what of it stands over the paper.
    readonly property real uprightFoot: 196
    readonly property real uprightLift: 0.46

    // Wide: the paper stands in the room left of the side panel.
    readonly property real wideBars: 180
    readonly property real wideSides: 96
    readonly property real widestPaper: 760
    readonly property real wideGap: 20
    readonly property real wideFoot: 52
    readonly property real wideLead: 6
    readonly property real wideUnder: 360

    // Lying: what stands beside the paper keeps off the window's edge.
    readonly property real lyingInset: 20

    readonly property bool upright: screen.upright
    readonly property bool lying: screen.lying
    readonly property bool wide: screen.wide
    readonly property real width: screen.width
    readonly property real height: screen.height

    readonly property real margin: Math.max(0, Math.min(widestMargin, (width - narrowest) / 2))
    // Side of the paper.
    readonly property real side: Math.floor(
        upright ? Math.min(width - 2 * margin, height - uprightBars - uprightGap - underHeight)
        : lying ? height - 2 * Tokens.space.m
        : Math.min(height - wideBars, width - Tokens.bars.sidePanel - wideSides, widestPaper))
    // Width of the part of the window that holds the paper, and of the column beside it in a lying window.
    readonly property real room: wide ? width - Tokens.bars.sidePanel : width
    readonly property real column: width - side - 2 * Tokens.space.m
    // Paper, gap and what stands under it.
    readonly property real block: side + uprightGap + underHeight

    readonly property real paperX: lying ? Tokens.space.m : Math.round((room - side) / 2)
    readonly property real paperY: lying ? Tokens.space.m
        : wide ? Math.round(barHeight + wideLead + Math.max(0, height - barHeight - wideFoot - block - wideLead) / 2)
        : Math.round(barHeight + Math.max(0, height - uprightFoot - barHeight - block) * uprightLift)

    readonly property real barX: lying ? width - column : 0
    readonly property real barWidth: lying ? column : room

    // As wide as the paper, unless that had to be drawn smaller.
    readonly property real underWidth: lying ? column - lyingInset : wide ? Math.min(wideUnder, side)
        : width - 2 * Math.max(margin, Tokens.space.m)
    readonly property real underX: lying ? width - underWidth - Tokens.space.m : Math.round((room - underWidth) / 2)
    readonly property real underY: lying ? barHeight + Tokens.space.m : paperY + side + (wide ? wideGap : uprightGap)

    readonly property real toolsWidth: lying ? column : width
    // The width over which a notice stands, at the window's right, and what it leaves free of that.
    readonly property real noticeSpan: wide ? Tokens.bars.sidePanel : toolsWidth
    readonly property real noticeMargins: 2 * (wide ? Tokens.space.sheetMargin : Tokens.space.l)
}
