import QtQuick
import Lamina

// The root of every screen: it fills the window, and knows which layout is due. Of upright, lying, wide and small
// exactly one is.
FocusScope {
    id: screen

    // The UIViewController that this is the layout of.
    required property var controller

    // What the screen is called, for those who can't see it.
    property string name
    // A sheet moves by itself, while `shown` says whether it is to stand or on its way out. Other screens are moved.
    property bool sheet: false
    property bool shown: true
    // The key for a step back was pressed.
    signal back()

    readonly property real lead: width - height
    readonly property bool low: height < Tokens.breakpoints.lowBelow
    readonly property bool lying: low && lead >= Tokens.breakpoints.lyingLead
    readonly property bool wide: !low && lead > 0 && width >= Tokens.breakpoints.wideFrom
    readonly property bool small: !lying && !wide && (low || lead > 0)
    readonly property bool upright: !lying && !wide && !small
    // An upright one with room beside a phone's column.
    readonly property bool tablet: upright && width >= Tokens.breakpoints.tabletFrom
    // A small one without room for words beside its canvas.
    readonly property bool slim: small && lead < Tokens.breakpoints.slimBelow

    // Width of the one column of a tablet.
    readonly property real tabletColumn: Math.min(width - 2 * Tokens.layout.tabletMargin, Tokens.layout.tabletColumn)
    // Sheets from the foot are for phones held upright.
    readonly property bool sheetsAreCards: !upright || tablet
    // What a hint says is at hand.
    readonly property string gestureHint: Host.mouseAtHand ? qsTranslate("Lamina", "Drag to move, turn the wheel to zoom")
                                                           : qsTranslate("Lamina", "Drag to move, pinch to zoom")

    anchors.fill: parent
    focus: true

    Keys.onPressed: event => {
        const leaves = KeyTable.find("back", event.key, event.modifiers) >= 0
        event.accepted = event.accepted || leaves
        if (leaves)
            back()
    }
}
