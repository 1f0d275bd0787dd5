import QtQuick
import Lamina

// What texts need of a width, known before they stand there: one size of letters at which each of them stands on one
// line, or the lines that they wrap to.
QtObject {
    id: fit

    required property var texts
    // Width of the line.
    required property real room
    // A group of Tokens.type, and its weight.
    required property var role
    property int weight: role.weight

    // Of the widest text in the role's own size.
    readonly property real widest: {
        letters.font // measured anew when it changes
        return texts.reduce((most, text) => Math.max(most, letters.advanceWidth(text)), 1)
    }
    readonly property int size: Math.max(Tokens.type.minimum, Math.floor(letters.font.pixelSize * Math.min(1, room / widest)))
    // Lines that the widest one takes in the role's own size, and their height.
    readonly property int lines: Math.min(2, Math.ceil(widest / Math.max(1, room)))
    readonly property real height: lines * Math.round(role.line * Math.max(1, Theme.textScale))

    readonly property FontMetrics letters: FontMetrics {
        font.pixelSize: Theme.textSize(fit.role.size)
        font.weight: fit.weight
    }
}
