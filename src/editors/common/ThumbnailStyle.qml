import QtQuick
import Lamina

// How the pictures of a strip or a grid look and stand. Without a word: cut out, each on its chip.
QtObject {
    // Side of one in a strip, and what is between two.
    property real side: Tokens.thumbs.sticker
    property real gap: 5
    property bool cutOut: true
    readonly property real inset: cutOut ? Tokens.space.xs + 2 : 0
    property real radius: cutOut ? Tokens.radius.cell : Tokens.radius.thumb
    // A white line round each.
    property bool edged: false
    // One of them can be in force.
    property bool marks: false
    // In a grid: what is kept free for the rings, and between two.
    readonly property real gridSlack: marks ? Tokens.space.s : Tokens.space.xs
    readonly property real gridGap: marks ? Tokens.space.m : Tokens.space.s
    // Each has its name under it.
    property bool captioned: false
    readonly property real captionGap: Tokens.space.xs + 2
    readonly property real captionHeight: captioned
        ? captionGap + Math.round(Tokens.type.label.line * Math.max(1, Theme.textScale)) : 0
}
