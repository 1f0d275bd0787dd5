import QtQuick
import Lamina

// A quiet chip on what is still to come.
Rectangle {
    implicitWidth: text.implicitWidth + 2 * Tokens.space.s
    implicitHeight: text.implicitHeight + Tokens.space.s
    radius: height / 2
    color: Tokens.palette.cell
    StyledText {
        id: text
        anchors.centerIn: parent
        text: qsTranslate("Lamina", "Soon")
        role: Tokens.type.label
        color: Tokens.palette.textSecondary
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
}
