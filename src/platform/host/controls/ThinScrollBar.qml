import QtQuick
import QtQuick.Templates as T
import Lamina

// Where a long list stands: a thin line at its right, to be dragged too. Nothing while all of it is seen.
T.ScrollBar {
    id: bar

    // On a white ground.
    property bool onPaper: false
    readonly property color lit: onPaper ? Tokens.palette.overPaperHud : Tokens.palette.text
    readonly property color quiet: onPaper ? Tokens.palette.scrimBusy : Tokens.palette.textDisabled

    implicitWidth: 12
    minimumSize: height > 0 ? Math.min(1, 32 / height) : 0
    visible: size < 1
    hoverEnabled: true
    Accessible.ignored: true
    contentItem: Item {
        Rectangle {
            anchors.right: parent.right
            anchors.rightMargin: 3
            width: 4
            height: parent.height
            radius: 2
            color: bar.pressed || bar.hovered ? bar.lit : bar.quiet
        }
    }
}
