import QtQuick
import Lamina

// A photo behind the square that will be cut out of it.
AppScreen {
    id: crop

    readonly property string title: qsTranslate("Lamina", "Photo %1 of 2").arg(controller.step)
    readonly property real below: controls.implicitHeight
    readonly property real side: upright ? Math.min(width, height - bar.height - below)
        : lying ? height - 2 * Tokens.space.m
        : Math.min(height - bar.height - 2 * Tokens.space.xxl, width - Tokens.bars.sidePanel - 96, 760)
    readonly property real column: upright ? width : wide ? Tokens.bars.sidePanel : width - canvas.x - side - Tokens.space.m
    readonly property real free: height - bar.height - side - below

    Keys.onEscapePressed: controller.backButton()
    Keys.onBackPressed: controller.backButton()
    Keys.onPressed: event => {
        const far = event.modifiers & Qt.ShiftModifier ? 10 : 1
        const steps = { [Qt.Key_Left]: [-far, 0], [Qt.Key_Right]: [far, 0], [Qt.Key_Up]: [0, -far], [Qt.Key_Down]: [0, far] }
        if (event.key in steps)
            controller.nudge(steps[event.key][0], steps[event.key][1])
        else if (event.key === Qt.Key_Plus || event.key === Qt.Key_Equal)
            controller.zoomBy(1.1)
        else if (event.key === Qt.Key_Minus)
            controller.zoomBy(1 / 1.1)
        else
            return
        event.accepted = true
    }

    TopBar {
        id: bar
        x: crop.lying ? crop.width - crop.column : 0
        width: crop.lying ? crop.column : crop.wide ? crop.width - Tokens.bars.sidePanel : crop.width
        wide: crop.wide
        title: crop.title
        onBack: crop.controller.backButton()
    }

    Rectangle {
        visible: crop.wide
        x: crop.width - width
        width: Tokens.bars.sidePanel
        height: parent.height
        color: Tokens.palette.panel
        Rectangle {
            width: 1
            height: parent.height
            color: Tokens.palette.hairline
        }
    }

    ViewCanvas {
        id: canvas
        objectName: "canvas"
        width: crop.side
        height: crop.side
        x: crop.lying ? Tokens.space.m : crop.wide ? Math.round((crop.width - Tokens.bars.sidePanel - width) / 2) : Math.round((crop.width - width) / 2)
        y: crop.lying ? Tokens.space.m
         : crop.wide ? Math.round(bar.height + (crop.height - bar.height - height) / 2 - 18)
         : Math.round(bar.height + (crop.free <= 56 ? crop.free : 56 + (crop.free - 56) / 2))
        controller: crop.controller
        focus: true
        activeFocusOnTab: true
        Accessible.role: Accessible.Graphic
        Accessible.name: qsTranslate("Lamina", "Photo behind the crop square")
        Accessible.description: qsTranslate("Lamina", "Arrow keys move it, plus and minus zoom")
        Accessible.focusable: true
        onTouched: hint.used = true
        onDoubleTapped: (x, y) => crop.controller.toggleZoom(x, y)
        Keys.onReturnPressed: crop.controller.doneButton()
        Keys.onEnterPressed: crop.controller.doneButton()

        CropMarks {
            anchors.fill: parent
        }
        FocusRing {
            shown: canvas.visualFocus
        }
    }

    Item {
        id: controls

        implicitHeight: hint.height + zoom.height + use.height + Tokens.space.xxl * (crop.upright ? 4 : 2)
        x: crop.upright ? 0 : crop.width - crop.column
        width: crop.column
        y: crop.upright ? canvas.y + canvas.height : bar.height
        height: crop.height - y

        StyledText {
            id: hint
            property bool used: false
            x: Tokens.space.l
            width: parent.width - 2 * Tokens.space.l
            y: crop.upright ? 21 : crop.wide ? -8 : 4
            text: qsTranslate("Lamina", "Drag to move, pinch to zoom")
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            horizontalAlignment: crop.upright ? Text.AlignHCenter : Text.AlignLeft
            opacity: used ? 0 : 1
            Behavior on opacity {
                NumberAnimation { duration: Theme.duration(Tokens.motion.fade) }
            }
        }

        Item {
            id: zoom
            x: Tokens.space.l
            width: parent.width - 2 * Tokens.space.l
            height: Tokens.touch.minimum
            y: crop.upright ? Math.round(hint.y + hint.height + (use.y - hint.y - hint.height - height) * 0.4)
                            : hint.y + hint.height + Tokens.space.l
            IconButton {
                id: minus
                iconName: "minus"
                name: qsTranslate("Lamina", "Zoom out")
                enabled: crop.controller.zoomScale > crop.controller.minimumZoomScale
                onClicked: crop.controller.zoomBy(1 / 1.1)
            }
            ValueSlider {
                anchors.left: minus.right
                anchors.right: plus.left
                name: qsTranslate("Lamina", "Zoom")
                // Equal ways on the line are equal ratios of the zoom.
                from: Math.log(crop.controller.minimumZoomScale)
                to: Math.log(crop.controller.maximumZoomScale)
                stepSize: (to - from) / 40
                snapMode: ValueSlider.NoSnap
                value: Math.log(crop.controller.zoomScale)
                onMoved: crop.controller.zoomScale = Math.exp(value)
            }
            IconButton {
                id: plus
                anchors.right: value.left
                iconName: "plus"
                name: qsTranslate("Lamina", "Zoom in")
                enabled: crop.controller.zoomScale < crop.controller.maximumZoomScale
                onClicked: crop.controller.zoomBy(1.1)
            }
            StyledText {
                id: value
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: Math.max(48, implicitWidth)
                text: qsTranslate("Lamina", "%1×").arg(crop.controller.zoomScale.toLocaleString(Qt.locale(), "f", 1))
                role: Tokens.type.caption
                strong: true
                horizontalAlignment: Text.AlignRight
                wrapMode: Text.NoWrap
            }
        }

        LaminaButton {
            id: use
            readonly property real inset: crop.wide ? Tokens.space.sheetMargin : Tokens.space.l
            x: inset
            width: parent.width - 2 * inset
            y: parent.height - height - (crop.upright ? Tokens.space.xxl : inset)
            iconName: "check"
            text: qsTranslate("Lamina", "Use photo")
            onClicked: crop.controller.doneButton()
        }
    }
}
