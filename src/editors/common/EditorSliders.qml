import QtQuick
import Lamina

// The sliders of an editor that belong to this panel, a row each: a drawer over the bar of tools, or a page of the side
// panel.
EditorPanel {
    id: panel

    // An EditorViewController.
    required property var controller

    // Stands over the sliders, and scrolls with them.
    property Item head: null
    // A finger is on one of them.
    property bool sliding: false

    // Those of the table that stand in this panel.
    readonly property var rows: controller.sliders.filter(row => row.panel === name)
    readonly property real headHeight: head ? head.height + Tokens.space.xs : 0
    // More are cut, so that one sees that they scroll.
    readonly property real rowsSeen: 3.55
    readonly property real lead: layout.wide ? 0 : layout.small ? Tokens.space.s : Tokens.space.xs
    readonly property real smallInset: layout.slim ? Tokens.space.xs + 2 : Tokens.space.m
    readonly property real whole: lead + headHeight + rows.length * lines.pitch + foot + 2 * edge

    kind: "drawer"
    wanted: layout.upright ? Math.min(whole, Math.round(lead + rowsSeen * lines.pitch + foot)) : whole

    EditorSliderLayout {
        id: lines
        labels: panel.rows.map(row => row.label)
        room: page.width
        inset: panel.layout.wide ? 0 : panel.layout.tablet ? panel.layout.underX
             : panel.layout.small ? panel.smallInset : Tokens.space.margin
        rightInset: panel.layout.wide ? 0 : panel.layout.tablet ? inset
                  : panel.layout.small ? panel.smallInset : Tokens.space.sheetMargin
        leastPitch: panel.layout.wide ? 56 : 44
    }
    ScrollPage {
        id: page
        anchors.fill: parent
        contentHeight: column.y + column.height
        clip: interactive
        marked: !panel.layout.slim

        Column {
            id: column
            y: panel.lead
            width: parent.width
            Item {
                width: parent.width
                height: panel.headHeight
                data: panel.head ? [panel.head] : []
            }
            Repeater {
                // The count alone: a row outlives a change of its value, and keeps the finger.
                model: panel.rows.length
                delegate: EditorSlider {
                    required property int index
                    row: panel.rows[index]
                    controller: panel.controller
                    measures: lines
                    onPressedChanged: panel.sliding = pressed
                }
            }
        }
    }
    Rectangle {
        visible: page.interactive && panel.foot > 0
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Tokens.palette.hairline
    }
}
