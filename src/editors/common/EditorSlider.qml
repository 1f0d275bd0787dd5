import QtQuick
import Lamina

// One slider of an editor: its label over its value, and the line. The controller hears of a drag from press to
// release, and of every other change by itself.
Item {
    id: item

    // Of {tag, label, minimum, maximum, start, value}.
    required property var row
    // An EditorViewController.
    required property var controller
    // An EditorSliderLayout.
    required property var measures

    readonly property alias pressed: slider.pressed
    readonly property real unit: 1
    readonly property real smallRange: 10

    function change(value) {
        slider.value = value
        controller.slide(row.tag, value)
    }
    // What is undone or chosen anew moves the thumb, but not under a finger: there it does as the finger goes. The row
    // knows nothing of drags, so the value is asked for.
    function take() {
        if (!slider.pressed)
            slider.value = controller.sliders.find(now => now.tag === row.tag).value
    }
    function follow(pressed) {
        if (pressed)
            return controller.beginSliding(row.tag)
        controller.endSliding(row.tag)
        take()
    }

    onRowChanged: take()
    Component.onCompleted: take()
    width: parent ? parent.width : 0
    height: measures.pitch

    Column {
        id: texts
        x: item.measures.inset
        y: item.measures.stacked ? 0 : Math.round((item.height - item.measures.textHeight) / 2)
        width: item.measures.labelWidth
        StyledText {
            width: parent.width
            text: item.row.label
            role: Tokens.type.caption
            font.pixelSize: item.measures.labelSize
            maximumLineCount: 1
            Accessible.ignored: true
        }
        StyledText {
            id: told
            width: parent.width
            text: item.controller.sliderText(item.row.tag, slider.value)
            role: Tokens.type.label
            font.weight: 400
            color: Tokens.palette.textSecondary
            maximumLineCount: 1
            Accessible.ignored: true
        }
        TapHandler {
            onDoubleTapped: slider.seek(item.row.start)
        }
    }
    ValueSlider {
        id: slider
        x: item.measures.lineX - thumb / 2
        y: item.measures.stacked ? item.measures.textHeight : (item.height - height) / 2
        width: item.measures.lineEnd - item.measures.lineX + thumb
        name: item.row.label
        words: told.text
        from: item.row.minimum
        to: item.row.maximum
        start: item.row.start
        climbs: true
        // What is told in whole numbers goes by them.
        stepSize: to - from > item.smallRange ? item.unit : item.unit / 100
        onPressedChanged: item.follow(pressed)
        onMoved: item.controller.slide(item.row.tag, value)
        onSought: wanted => item.change(wanted)
    }
}
