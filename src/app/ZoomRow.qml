import QtQuick
import Lamina

// The zoom of a crop: steps down and up, a line between them, and the value.
Item {
    id: row

    // A PinchZoomViewController.
    required property var controller
    readonly property string words: qsTranslate("Lamina", "%1×").arg(controller.zoomScale.toLocaleString(Qt.locale(), "f", 1))

    implicitHeight: Tokens.touch.minimum

    IconButton {
        id: minus
        iconName: "minus"
        name: qsTranslate("Lamina", "Zoom out")
        enabled: row.controller.zoomScale > row.controller.minimumZoomScale
        onClicked: row.controller.zoomBy(1 / 1.1)
    }
    ValueSlider {
        id: slider
        anchors.left: minus.right
        anchors.right: plus.left
        name: qsTranslate("Lamina", "Zoom")
        words: row.words
        // Equal ways on the line are equal ratios of the zoom.
        from: Math.log(row.controller.minimumZoomScale)
        to: Math.log(row.controller.maximumZoomScale)
        stepSize: (to - from) / 40
        snapMode: ValueSlider.NoSnap
        value: Math.log(row.controller.zoomScale)
        onMoved: row.controller.zoomScale = Math.exp(slider.value)
    }
    IconButton {
        id: plus
        anchors.right: number.left
        iconName: "plus"
        name: qsTranslate("Lamina", "Zoom in")
        enabled: row.controller.zoomScale < row.controller.maximumZoomScale
        onClicked: row.controller.zoomBy(1.1)
    }
    StyledText {
        id: number
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(48, implicitWidth)
        text: row.words
        role: Tokens.type.caption
        strong: true
        horizontalAlignment: Text.AlignRight
        wrapMode: Text.NoWrap
        Accessible.ignored: true // the slider says it
    }
}
