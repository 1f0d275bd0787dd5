import QtQuick
import Lamina

// Says of one choice that it suits best.
Rectangle {
    readonly property alias text: word.text

    implicitWidth: word.implicitWidth + 2 * Tokens.space.s
    implicitHeight: word.lineHeight + Tokens.space.xs
    radius: height / 2
    color: Tokens.palette.suggestedFill

    StyledText {
        id: word
        anchors.centerIn: parent
        text: qsTranslate("Lamina", "Suggested")
        role: Tokens.type.label
        font.weight: Tokens.type.label.weightActive
        color: Tokens.palette.suggestedText
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
}
