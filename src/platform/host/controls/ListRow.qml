import QtQuick
import QtQuick.Templates as T
import Lamina

// A line of a list or of a sheet's choices, over its whole width. What stands in it is its content.
T.ItemDelegate {
    id: row

    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    implicitHeight: Tokens.touch.listRow
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    // Lit though nothing points at it: the choice that was made before.
    property bool lit: false

    background: Rectangle {
        color: row.down ? Tokens.palette.cell : row.hovered || row.lit ? Tokens.palette.panelRaised : "transparent"
        FocusRing {
            anchors.margins: 2
            inside: true
            control: row
            radius: Tokens.radius.field
        }
    }
}
