import QtQuick
import Lamina

// Text in one of the look's sizes; it grows with the system's text size, wraps and then ends in an ellipsis.
Text {
    id: styled

    // A group of Tokens.type.
    property var role: Tokens.type.body
    property bool strong: false

    color: Tokens.palette.text
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    elide: Text.ElideRight
    font.pixelSize: Theme.textSize(role.size)
    font.weight: strong && role.weightStrong ? role.weightStrong : role.weight
    font.letterSpacing: role.letterSpacing ? role.letterSpacing * Theme.textScale : 0
    lineHeightMode: role.line ? Text.FixedHeight : Text.ProportionalHeight
    lineHeight: role.line ? Math.round(role.line * Math.max(1, Theme.textScale)) : 1

    // A line higher than its letters would leave all of the rest under them; half of it belongs above.
    transform: Translate {
        y: styled.role.line ? Math.max(0, Math.round((styled.lineHeight - Theme.fontHeight * styled.font.pixelSize) / 2)) : 0
    }
}
