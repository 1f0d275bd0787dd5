import QtQuick
import Lamina

// The measures of the home screen, in points of the window: the head, a card of left work where there is one, and the
// three cards, one over the other or side by side.
QtObject {
    id: layout

    // The AppScreen that is laid out.
    required property var screen
    required property real headHeight
    // Of the card of left work; 0: there is none.
    required property real keptHeight
    // Titles of the cards, and the height of the words of the one that has most to say.
    required property var titles
    required property real wordsHeight

    readonly property bool wide: screen.wide
    readonly property bool tablet: screen.tablet
    readonly property real width: screen.width
    readonly property real height: screen.height
    readonly property bool kept: keptHeight > 0

    // A small window that is too narrow for three cards side by side has them as rows of a list.
    readonly property bool listed: screen.small && width < 420
    readonly property bool stacked: screen.upright || listed
    readonly property bool low: !screen.upright && !wide

    readonly property real gap: wide ? 22 : tablet ? 20 : low ? Tokens.space.m : 14
    readonly property real widestCard: 354
    readonly property real wideMargin: Math.max(Tokens.space.xxl, Math.min(88, (width - 900) / 4 + Tokens.space.xxl))
    readonly property real usable: tablet ? screen.tabletColumn
        : stacked ? width - 2 * Tokens.space.l
        : Math.min(width - 2 * (wide ? wideMargin : Tokens.space.l), 3 * widestCard + 2 * gap)
    readonly property real edge: Math.round((width - usable) / 2)

    // The sign's tile keeps a little room in its own square.
    readonly property real signSize: wide ? 72 : tablet ? 68 : low ? 38 : 48
    readonly property real headTop: screen.upright ? 28 : Tokens.space.m
    // From the head to what follows.
    readonly property real headGap: wide ? 53 : low ? Tokens.space.m : kept ? Tokens.space.l : 32
    readonly property real foot: kept || !screen.upright ? Tokens.space.l : tablet ? 28 : 38

    // What is left for the cards.
    readonly property real above: headHeight + headGap + (kept ? keptHeight + gap : 0)
    readonly property real free: height - headTop - above - foot
    readonly property real scale: Math.max(1, Theme.textScale)
    readonly property real cardWidth: stacked ? usable : (usable - 2 * gap) / 3
    readonly property real cardHeight: listed ? 96
        : stacked ? Math.max(120, Math.min(tablet ? 256 : 220, (free - 2 * gap) / 3))
        : wide ? Math.max(240, Math.min(442 * scale, free - 92))
        : Math.max(200, Math.min(320, free))

    readonly property bool large: tablet || (wide && cardWidth > 280)
    readonly property real inset: large ? 32 : !stacked && cardWidth < 160 ? Tokens.space.m : 20
    readonly property real printInset: tablet ? 36 : inset
    readonly property real cardFoot: large ? 36 : listed ? Tokens.space.m : 20

    // The print is as large as the card's shape allows; long titles and large text take room from it, down to a size at
    // which it can still be read.
    readonly property real printSide: Math.floor(stacked
        ? Math.max(listed ? 60 : 80, Math.min(tablet ? 204 : 140, cardHeight - (tablet ? 52 : listed ? 28 : 34),
                                              cardWidth - inset - printInset - Tokens.space.m - Math.ceil(fit.widest) - 1))
        : Math.max(72, Math.min(236, cardWidth * 0.67, cardHeight - wordsHeight - cardFoot - inset - Tokens.space.l)))

    // Side by side the titles stand on one line each.
    readonly property var titleRole: large ? Tokens.type.display : Tokens.type.title
    readonly property int titleSize: stacked ? Theme.textSize(titleRole.size) : fit.size
    readonly property LabelFit fit: LabelFit {
        texts: layout.titles
        room: layout.cardWidth - 2 * layout.inset
        role: layout.titleRole
    }
}
