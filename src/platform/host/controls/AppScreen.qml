import QtQuick
import Lamina

// The root of every screen: it fills the window, and knows which of the three layouts is due.
FocusScope {
    id: screen

    // The UIViewController that this is the layout of.
    required property var controller

    readonly property bool lying: width > height && height < Tokens.breakpoints.lyingBelow
    readonly property bool wide: width >= Tokens.breakpoints.wideFrom && width > height && !lying
    readonly property bool upright: !lying && !wide

    anchors.fill: parent
    focus: true
}
