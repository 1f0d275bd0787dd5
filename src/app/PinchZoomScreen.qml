import QtQuick
import Lamina

// A photo behind the square that will be cut out of it.
AppScreen {
    id: crop

    // What the controls take under the square of an upright window at least, and how much there is beyond that.
    readonly property real least: hintFit.height + Tokens.touch.minimum + 3 * Tokens.space.m + Tokens.space.xxl
        + Math.max(Tokens.touch.button, useFit.height + Tokens.space.l)
    readonly property real free: Math.max(0, height - bar.height - measures.side - least)
    readonly property real column: upright ? width : wide ? Tokens.bars.sidePanel : measures.column

    WorkLayout {
        id: measures
        screen: crop
        barHeight: bar.height
        uprightSide: Math.min(crop.width, crop.height - bar.height - crop.least)
        uprightY: Math.round(bar.height + crop.free * 0.42)
        wideSide: Math.min(crop.height - bar.height - 2 * Tokens.space.xxl, crop.width - Tokens.bars.sidePanel - 96)
        wideY: Math.round(bar.height + (crop.height - bar.height - side) / 2 - 18)
    }

    LabelFit {
        id: hintFit
        texts: [crop.gestureHint]
        room: crop.tablet ? crop.tabletColumn : crop.width - 2 * Tokens.space.l
        role: Tokens.type.caption
    }
    LabelFit {
        id: useFit
        texts: [use.text]
        room: hintFit.room - 3 * Tokens.space.m - Tokens.icon.grid
        role: Tokens.type.body
        weight: Tokens.type.body.weightStrong
    }

    Keys.forwardTo: [canvas]
    name: bar.title
    onBack: controller.backButton()
    Keys.onPressed: event => {
        const use = KeyTable.find("use", event.key, event.modifiers) >= 0
        event.accepted = event.accepted || use
        if (use)
            controller.doneButton()
    }

    TopBar {
        id: bar
        x: measures.barX
        width: measures.barWidth
        large: crop.wide || crop.tablet
        column: crop.tablet ? crop.tabletColumn : 0
        title: qsTranslate("Lamina", "Photo %1 of 2").arg(crop.controller.step)
        onBack: crop.controller.backButton()
        // The column of a slim window has no room for words.
        LaminaButton {
            visible: crop.slim
            width: Math.min(implicitWidth, bar.room)
            kind: "pill"
            text: qsTranslate("Lamina", "Use photo")
            onClicked: crop.controller.doneButton()
        }
    }

    WorkCanvas {
        id: canvas
        width: measures.side
        height: measures.side
        x: measures.x
        y: measures.y
        controller: crop.controller
        Accessible.name: qsTranslate("Lamina", "Photo behind the crop square")
        Accessible.description: qsTranslate("Lamina", "Arrow keys move it, plus and minus zoom")
        onTouched: {
            hint.used = true
            marks.wake()
        }
        onDoubleTapped: (x, y) => crop.controller.toggleZoom(x, y)

        // A photo that one can see through stands on paper, as it will in the blend.
        Rectangle {
            z: -1
            anchors.fill: parent
            color: Tokens.palette.paper
        }
        CropMarks {
            id: marks
            anchors.fill: parent
            held: finger.active
        }
        PointHandler {
            id: finger
        }
    }
    Connections {
        target: crop.controller
        function onZoomScaleChanged() {
            marks.wake()
        }
    }

    SidePanel {
        visible: crop.wide
    }

    Item {
        id: controls

        readonly property real inset: crop.wide ? Tokens.space.sheetMargin : crop.small ? 0 : Tokens.space.l
        readonly property real inner: crop.small ? crop.column : crop.tablet ? crop.tabletColumn : width - 2 * inset
        // Grows a little with the room, then the rest stands over the button.
        readonly property real gap: Tokens.space.m + (crop.upright ? Math.min(10, crop.free / 14) : 0)
        // The hint stands over the zoom, or in a wide and a small window's column under it.
        readonly property bool hintFirst: crop.upright || crop.lying
        readonly property real start: crop.wide ? heading.height + Tokens.space.xs : crop.lying ? Tokens.space.xs : crop.upright ? gap : 0

        x: (crop.small ? measures.columnX : crop.width - width) + (crop.tablet ? (width - inner) / 2 : inset)
        y: crop.upright ? canvas.y + canvas.height : crop.wide ? Tokens.space.xl : crop.small ? canvas.y : bar.height
        width: crop.column
        height: (crop.small ? measures.smallFoot : crop.height) - y

        StyledText {
            id: heading
            visible: crop.wide
            text: qsTranslate("Lamina", "Zoom")
            role: Tokens.type.caption
            strong: true
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        StyledText {
            id: hint
            property bool used: false
            width: controls.inner
            y: controls.start + (controls.hintFirst ? 0 : zoom.height + (crop.wide ? Tokens.space.xs : controls.gap))
            text: crop.gestureHint
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            horizontalAlignment: crop.upright ? Text.AlignHCenter : Text.AlignLeft
            Accessible.name: text
            opacity: used ? 0 : 1
            visible: opacity > 0 && !crop.slim && (!crop.small || y + height <= use.y)
            Behavior on opacity {
                NumberAnimation { duration: Theme.duration(Tokens.motion.fade) }
            }
        }
        ZoomRow {
            id: zoom
            width: controls.inner
            upright: crop.slim
            y: controls.start + (controls.hintFirst ? hint.height + controls.gap : 0)
            controller: crop.controller
        }
        LaminaButton {
            id: use
            visible: !crop.slim
            width: controls.inner
            y: parent.height - height - (crop.upright ? Tokens.space.xxl : controls.inset)
            iconName: controls.inner < 160 ? "" : "check"
            text: qsTranslate("Lamina", "Use photo")
            onClicked: crop.controller.doneButton()
        }
    }
}
