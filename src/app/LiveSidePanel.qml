import QtQuick
import Lamina

// The live screen's tools beside a wide window's picture: the source, looks and effects at once, still and clip.
SidePanel {
    id: panel

    // A LiveViewController.
    required property var controller
    required property ThumbnailStyle thumbnails

    readonly property real inset: Tokens.space.sheetMargin
    readonly property bool usable: !controller.stopped

    ToolRow {
        id: tools
        y: 14
        x: Math.round((parent.width - width) / 2)
        room: parent.width - 2 * Tokens.space.s
        spread: true
        tools: panel.controller.sideTools
        onChosen: identifier => panel.controller.chooseTool(identifier)
    }
    Rectangle {
        id: rule
        y: tools.y + tools.height + 10
        width: parent.width
        height: 1
        color: Tokens.palette.hairline
    }
    ScrollPage {
        id: page
        y: rule.y + rule.height
        x: panel.inset - panel.thumbnails.gridSlack
        width: parent.width - x
        height: foot.y - y - Tokens.space.s
        contentHeight: column.height + Tokens.space.m
        clip: true

        Column {
            id: column
            width: page.width - (panel.inset - panel.thumbnails.gridGap)
            topPadding: Tokens.space.xl

            StyledText {
                leftPadding: panel.thumbnails.gridSlack
                text: qsTranslate("Lamina", "Filter")
                role: Tokens.type.caption
                strong: true
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            ThumbnailGrid {
                width: parent.width
                height: contentHeight
                interactive: false
                focus: false // the picture has it first
                name: qsTranslate("Lamina", "Filter")
                model: panel.controller.thumbnails
                style: panel.thumbnails
                marked: panel.controller.lookRow
                onChosen: tag => panel.controller.chooseLook(tag)
            }
            StyledText {
                leftPadding: panel.thumbnails.gridSlack
                topPadding: Tokens.space.l
                bottomPadding: Tokens.space.s
                text: qsTranslate("Lamina", "Effects")
                role: Tokens.type.caption
                strong: true
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            EditorSliderLayout {
                id: lines
                labels: panel.controller.sliders.map(row => row.label)
                room: panel.width - 2 * panel.inset
                inset: 0
                rightInset: 0
                leastPitch: 50
            }
            Repeater {
                // The count alone: a row outlives a change of its value, and keeps the finger.
                model: panel.controller.sliders.length
                delegate: Item {
                    id: place
                    required property int index
                    width: column.width
                    height: lines.pitch
                    EditorSlider {
                        x: panel.thumbnails.gridSlack
                        row: panel.controller.sliders[place.index]
                        controller: panel.controller
                        measures: lines
                    }
                }
            }
        }
    }
    Row {
        id: foot
        x: panel.inset
        y: parent.height - height - panel.inset
        width: parent.width - 2 * panel.inset
        spacing: Tokens.space.m
        LaminaButton {
            id: still
            width: Math.round((parent.width - parent.spacing) * 0.62)
            iconName: "shutter"
            text: qsTranslate("Lamina", "Save still")
            enabled: panel.usable
            onClicked: panel.controller.takeStill()
        }
        LaminaButton {
            width: parent.width - parent.spacing - still.width
            kind: "quiet"
            iconName: panel.controller.recording ? "clip1" : "clip"
            text: panel.controller.recording ? panel.controller.clipTime : qsTranslate("Lamina", "Clip")
            Accessible.description: panel.controller.recording ? qsTranslate("Lamina", "Ends the clip") : ""
            enabled: panel.usable
            onClicked: panel.controller.toggleClip()
        }
    }
}
