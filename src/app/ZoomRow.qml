import QtQuick
import Lamina

// The zoom of a crop: steps down and up, a line between them, and the value. Where there is no room for the line, the
// value stands in its place; in a column, the three stand one over the other.
Item {
    id: row

    // A PinchZoomViewController.
    required property var controller
    property bool upright: false
    readonly property string words: qsTranslate("Lamina", "%1×").arg(controller.zoomScale.toLocaleString(Qt.locale(), "f", 1))

    readonly property real button: Tokens.touch.minimum
    readonly property real numberWidth: Math.max(48, number.implicitWidth)
    readonly property real lineWidth: width - 2 * button - numberWidth
    readonly property bool hasLine: !upright && lineWidth >= 2 * button

    implicitHeight: upright ? 2 * button + number.lineHeight + 2 * Tokens.space.s : button

    IconButton {
        id: minus
        x: row.upright ? (row.width - width) / 2 : 0
        y: row.upright ? row.height - height : 0
        iconName: "minus"
        name: qsTranslate("Lamina", "Zoom out")
        enabled: row.controller.zoomScale > row.controller.minimumZoomScale
        onClicked: row.controller.zoomBy(1 / 1.1)
    }
    ValueSlider {
        id: slider
        visible: row.hasLine
        x: row.button
        width: row.lineWidth
        name: qsTranslate("Lamina", "Zoom")
        words: row.words
        // Equal ways on the line are equal ratios of the zoom.
        from: Math.log(row.controller.minimumZoomScale)
        to: Math.log(row.controller.maximumZoomScale)
        stepSize: (to - from) / 40
        snapMode: ValueSlider.NoSnap
        value: Math.log(row.controller.zoomScale)
        onMoved: row.controller.zoomScale = Math.exp(slider.value)
        onSought: wanted => row.controller.zoomScale = Math.exp(wanted)
    }
    IconButton {
        id: plus
        x: row.upright ? (row.width - width) / 2 : row.width - width - (row.hasLine ? row.numberWidth : 0)
        iconName: "plus"
        name: qsTranslate("Lamina", "Zoom in")
        enabled: row.controller.zoomScale < row.controller.maximumZoomScale
        onClicked: row.controller.zoomBy(1.1)
    }
    StyledText {
        id: number
        x: row.upright ? 0 : row.hasLine ? row.width - width : row.button
        y: (row.height - height) / 2
        width: row.hasLine ? row.numberWidth : row.width - (row.upright ? 0 : 2 * row.button)
        text: row.words
        role: Tokens.type.caption
        strong: true
        horizontalAlignment: row.hasLine ? Text.AlignRight : Text.AlignHCenter
        wrapMode: Text.NoWrap
        Accessible.ignored: true // the slider says it
    }
}
