import QtQuick
import Lamina

// The root of every screen: it fills the window, and knows which of the three layouts is due.
FocusScope {
    id: screen

    // The UIViewController that this is the layout of.
    required property var controller

    // What the screen is called, for those who can't see it.
    property string name
    // The key for a step back was pressed.
    signal back()

    readonly property bool lying: width > height && height < Tokens.breakpoints.lyingBelow
    readonly property bool wide: width >= Tokens.breakpoints.wideFrom && width > height && !lying
    readonly property bool upright: !lying && !wide

    anchors.fill: parent
    focus: true

    Keys.onPressed: event => {
        const leaves = KeyTable.find("back", event.key, event.modifiers) >= 0
        event.accepted = event.accepted || leaves
        if (leaves)
            back()
    }
}
