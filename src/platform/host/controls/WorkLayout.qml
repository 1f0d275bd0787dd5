import QtQuick
import Lamina

// Where the square that is worked on stands, and the column beside it. Upright and wide windows leave the square's
// place to the screen; lying and small ones have the same on all screens.
QtObject {
    id: frame

    // The AppScreen that is laid out.
    required property var screen
    required property real barHeight
    // Side and place of the square in upright and in wide windows.
    required property real uprightSide
    required property real wideSide
    required property real uprightY
    required property real wideY

    readonly property bool upright: screen.upright
    readonly property bool tablet: screen.tablet
    readonly property bool lying: screen.lying
    readonly property bool wide: screen.wide
    readonly property bool small: screen.small
    readonly property bool slim: screen.slim
    // The square has a column at its right.
    readonly property bool beside: lying || small
    readonly property real width: screen.width
    readonly property real height: screen.height
    readonly property real inset: Tokens.space.m

    // Small windows: the bar lies over all of the width, square and column end on one line.
    readonly property real smallTop: barHeight + Tokens.space.xs
    readonly property real smallFoot: height - Tokens.space.l
    readonly property real smallLeast: slim ? Tokens.layout.slimColumn : 136

    readonly property real side: Math.max(0, Math.floor(
        lying ? height - 2 * inset
        : small ? Math.min(smallFoot - smallTop, width - smallLeast - 3 * inset)
        : wide ? wideSide : uprightSide))

    // A lying window's column reaches to its right edge.
    readonly property real column: lying ? Math.min(width - side - 2 * inset, Tokens.layout.columnMost)
        : slim ? Tokens.layout.slimColumn : Math.min(width - side - 3 * inset, Tokens.layout.smallColumnMost)
    readonly property real columnX: width - column - (small ? inset : 0)
    // The part of the window that the square is in.
    readonly property real room: wide ? width - Tokens.bars.sidePanel : lying ? width - column : width

    readonly property real x: small ? inset : Math.round((room - side) / 2)
    readonly property real y: lying ? inset : small ? smallTop : wide ? wideY : uprightY

    readonly property real barX: lying ? columnX : 0
    readonly property real barWidth: lying ? column : room
}
