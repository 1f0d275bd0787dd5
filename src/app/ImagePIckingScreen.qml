import QtQuick
import Lamina

// Where the next photo comes from, and what it will do in the blend.
AppScreen {
    id: chooser

    readonly property bool second: controller.step === 2

    name: second ? qsTranslate("Lamina", "Second photo") : qsTranslate("Lamina", "First photo")
    onBack: controller.backButton()
    KeyCommand {
        command: "open"
        enabled: chooser.activeFocus
        onActivated: chooser.controller.cameraButton()
    }

    TopBar {
        id: bar
        width: parent.width
        wide: chooser.wide
        onBack: chooser.controller.backButton()
    }

    // On a wide window the same as a card.
    Rectangle {
        visible: chooser.wide
        anchors.fill: scroller
        radius: Tokens.radius.homeCardWide
        color: Tokens.palette.panel
        border.width: 1
        border.color: Tokens.palette.cardEdge
    }

    ScrollPage {
        id: scroller
        width: chooser.wide ? 480 : parent.width
        height: chooser.wide ? Math.min(600, parent.height - bar.height - Tokens.space.xl) : parent.height - bar.height
        x: Math.round((parent.width - width) / 2)
        y: chooser.wide ? Math.round(Math.max(bar.height, (parent.height - height) / 2)) : bar.height
        contentHeight: Math.max(height, page.needed)
        clip: interactive

        Item {
            id: page

            // A lying phone has the art at the left, all else at the right.
            readonly property real column: chooser.lying ? Math.round(width / 2) : 0
            readonly property real textInset: chooser.lying ? 0 : chooser.wide ? 32 : Tokens.space.xxl
            readonly property real buttonInset: chooser.lying ? 0 : chooser.wide ? 32 : Tokens.space.l
            readonly property real foot: chooser.wide ? 32 : chooser.lying ? Tokens.space.l : Tokens.space.xxl
            readonly property real needed: words.y + words.height + Tokens.space.xxl + buttons.height + foot

            width: scroller.width
            height: scroller.contentHeight

            Column {
                id: words
                x: page.column + page.textInset
                y: chooser.lying ? 0 : chooser.wide ? 36 : Tokens.space.xxl
                width: page.width - x - (chooser.lying ? Tokens.space.l : page.textInset)
                spacing: Tokens.space.s
                StepMarks {
                    step: chooser.controller.step
                    bottomPadding: 10
                }
                StyledText {
                    width: parent.width
                    text: chooser.name
                    role: Tokens.type.display
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                StyledText {
                    width: parent.width
                    text: chooser.second
                        ? qsTranslate("Lamina", "This one lies on top. Move it, zoom it, let the first one shine through.")
                        : qsTranslate("Lamina", "This one stays in place. Pick something calm: a sky, a wall, the sea.")
                    color: Tokens.palette.textSecondary
                }
            }

            Icon {
                readonly property real above: chooser.lying ? 0 : words.y + words.height
                readonly property real below: chooser.lying ? scroller.height - page.foot : buttons.y
                readonly property real room: chooser.lying ? page.column : page.width

                name: chooser.controller.selectImage
                // The backdrop is 360 by 300; where hardly any of it could be seen, it is left out.
                visible: height >= 96
                width: Math.min(room, Math.max(0, below - above) * 1.2, 432)
                height: width / 1.2
                x: (room - width) / 2
                y: above + (below - above - height) / 2
            }

            Column {
                id: buttons
                x: page.column + page.buttonInset
                y: page.height - height - page.foot
                width: page.width - x - (chooser.lying ? Tokens.space.l : page.buttonInset)
                spacing: Tokens.space.m
                LaminaButton {
                    width: parent.width
                    iconName: "Gallery"
                    text: qsTranslate("Lamina", "Photo library")
                    focus: true
                    onClicked: chooser.controller.cameraButton()
                }
                LaminaButton {
                    width: parent.width
                    kind: "quiet"
                    iconName: "camera"
                    text: qsTranslate("Lamina", "Camera")
                    onClicked: chooser.controller.galleryButton()
                }
            }
        }
    }
}
