import QtQuick
import Lamina

// A slider under its label, with its value in a box beside it and what that means at the label's right.
Item {
    id: field

    required property string name
    required property real from
    required property real to
    // Where a double tap on the label takes it.
    required property real start
    // The value as it is shown.
    required property string shownValue
    // All that this can be, where that is words: the box has room for each.
    property var shownValues: [shownValue]
    // What it comes to, and what is to be said of that below.
    property string meaning
    property string note
    signal moved(real value)

    property alias value: slider.value
    // On one line while there is room for both.
    readonly property bool stacked: label.implicitWidth + told.implicitWidth + Tokens.space.m > width

    x: Tokens.space.sheetMargin
    width: parent ? parent.width - 2 * x : 0
    implicitHeight: remark.y + (remark.visible ? remark.height : 0)

    StyledText {
        id: label
        width: field.stacked ? parent.width : implicitWidth
        text: field.name
        role: Tokens.type.caption
        color: Tokens.palette.textSecondary
        Accessible.ignored: true
        TapHandler {
            onDoubleTapped: field.moved(field.start)
        }
    }
    StyledText {
        id: told
        x: field.stacked ? 0 : parent.width - width
        y: field.stacked ? label.height : 0
        width: Math.min(implicitWidth, parent.width)
        text: field.meaning
        role: Tokens.type.caption
        Accessible.ignored: true
    }
    ValueSlider {
        id: slider
        // Its line begins where the fields do, its thumb may stand out.
        x: -thumb / 2
        y: label.height + (field.stacked ? told.height : 0)
        width: parent.width - box.width - Tokens.space.l + thumb / 2
        name: field.name
        words: [field.shownValue, field.meaning, field.note].filter(text => text !== "").join(". ")
        from: field.from
        to: field.to
        stepSize: 0.1
        start: field.start
        onMoved: field.moved(value)
        onSought: wanted => field.moved(wanted)
    }
    Rectangle {
        id: box
        anchors.right: parent.right
        anchors.verticalCenter: slider.verticalCenter
        width: Math.max(58, Math.ceil(values.widest) + 2 * Tokens.space.m)
        height: Math.max(38, shown.height + Tokens.space.s)
        radius: Tokens.radius.field
        color: Tokens.palette.field
        border.width: 1
        border.color: Tokens.palette.fieldBorder
        LabelFit {
            id: values
            texts: field.shownValues
            room: field.width
            role: Tokens.type.body
            weight: Tokens.type.body.weightStrong
        }
        StyledText {
            id: shown
            anchors.centerIn: parent
            text: field.shownValue
            strong: true
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }
    }
    StyledText {
        id: remark
        y: slider.y + slider.height
        width: parent.width
        visible: text !== ""
        text: field.note
        role: Tokens.type.caption
        color: Tokens.palette.textSecondary
        Accessible.ignored: true
    }
}
