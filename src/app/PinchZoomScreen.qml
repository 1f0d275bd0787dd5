import QtQuick
import Lamina

// A photo behind the square that will be cut out of it.
AppScreen {
    id: crop

    // What the controls take under the square at least, and how much there is beyond that.
    readonly property real least: hint.height + zoom.height + use.height + 3 * Tokens.space.m + Tokens.space.xxl
    readonly property real side: upright ? Math.min(width, height - bar.height - least)
        : lying ? height - 2 * Tokens.space.m
        : Math.min(height - bar.height - 2 * Tokens.space.xxl, width - Tokens.bars.sidePanel - 96, 760)
    readonly property real free: Math.max(0, height - bar.height - side - least)
    readonly property real column: upright ? width : wide ? Tokens.bars.sidePanel : width - side - 2 * Tokens.space.m
    readonly property real room: wide ? width - column : width

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
        x: crop.lying ? crop.width - width : 0
        width: crop.lying ? crop.column : crop.room
        wide: crop.wide
        title: qsTranslate("Lamina", "Photo %1 of 2").arg(crop.controller.step)
        onBack: crop.controller.backButton()
    }

    WorkCanvas {
        id: canvas
        width: crop.side
        height: crop.side
        x: crop.lying ? Tokens.space.m : Math.round((crop.room - width) / 2)
        y: crop.lying ? Tokens.space.m
         : crop.wide ? Math.round(bar.height + (crop.height - bar.height - height) / 2 - 18)
         : Math.round(bar.height + crop.free * 0.42)
        controller: crop.controller
        Accessible.name: qsTranslate("Lamina", "Photo behind the crop square")
        Accessible.description: qsTranslate("Lamina", "Arrow keys move it, plus and minus zoom")
        onTouched: hint.used = true
        onDoubleTapped: (x, y) => crop.controller.toggleZoom(x, y)

        CropMarks {
            anchors.fill: parent
        }
    }

    SidePanel {
        visible: crop.wide
    }

    Item {
        id: controls

        readonly property real inset: crop.wide ? Tokens.space.sheetMargin : Tokens.space.l
        // Grows a little with the room, then the rest stands over the button.
        readonly property real gap: Tokens.space.m + (crop.upright ? Math.min(10, crop.free / 14) : 0)

        x: crop.width - width + inset
        width: crop.column
        y: crop.upright ? canvas.y + canvas.height : crop.wide ? Tokens.space.xl : bar.height
        height: crop.height - y

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
            width: use.width
            y: crop.wide ? zoom.y + zoom.height + Tokens.space.xs : crop.lying ? Tokens.space.xs : controls.gap
            text: qsTranslate("Lamina", "Drag to move, pinch to zoom")
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            horizontalAlignment: crop.upright ? Text.AlignHCenter : Text.AlignLeft
            Accessible.name: text
            opacity: used ? 0 : 1
            visible: opacity > 0
            Behavior on opacity {
                NumberAnimation { duration: Theme.duration(Tokens.motion.fade) }
            }
        }
        ZoomRow {
            id: zoom
            width: use.width
            y: crop.wide ? heading.height + Tokens.space.xs : hint.y + hint.height + controls.gap
            controller: crop.controller
        }
        LaminaButton {
            id: use
            width: parent.width - 2 * controls.inset
            y: parent.height - height - (crop.upright ? Tokens.space.xxl : controls.inset)
            iconName: "check"
            text: qsTranslate("Lamina", "Use photo")
            onClicked: crop.controller.doneButton()
        }
    }
}
