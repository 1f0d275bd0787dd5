import QtQuick
import Lamina

// The measures of the rows of an editor's sliders, the same for all of them: the label and its value stand at the left
// of the line or, where that would get too short, over it.
QtObject {
    id: layout

    required property var labels
    // Width of a row.
    required property real room
    // What is kept free at the left and at the right of a row.
    required property real inset
    required property real rightInset
    required property real leastPitch

    readonly property real leastLabel: 104
    readonly property real leastLine: 140
    // Between the label and the thumb at the line's end.
    readonly property real gap: Tokens.space.s + Tokens.touch.sliderThumb / 2
    readonly property real labelColumn: Math.max(leastLabel, Math.ceil(fit.widest) + gap)
    readonly property bool stacked: room - inset - labelColumn - rightInset < leastLine

    readonly property real textHeight: Math.round(Tokens.type.caption.line * Math.max(1, Theme.textScale)) + valueHeight
    readonly property real valueHeight: Math.round(Tokens.type.label.line * Math.max(1, Theme.textScale))
    readonly property real pitch: stacked ? textHeight + Tokens.touch.minimum + Tokens.space.xs
                                          : Math.max(leastPitch, textHeight + Tokens.space.m)
    // Where the line begins and ends.
    readonly property real lineX: stacked ? inset : inset + labelColumn
    readonly property real lineEnd: room - rightInset
    readonly property real labelWidth: stacked ? room - inset - rightInset : labelColumn - gap

    readonly property int labelSize: fit.size
    readonly property LabelFit fit: LabelFit {
        texts: layout.labels
        room: layout.labelWidth
        role: Tokens.type.caption
    }
}
