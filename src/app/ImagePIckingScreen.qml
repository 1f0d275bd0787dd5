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
        large: chooser.wide || chooser.tablet
        column: chooser.tablet ? chooser.tabletColumn : 0
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

            // Lying, or small with room for words, it has the art at the left, all else at the right.
            readonly property bool halved: chooser.lying || (chooser.small && !chooser.slim)
            readonly property real column: halved ? Math.round(width / 2) : chooser.tablet ? (width - chooser.tabletColumn) / 2 : 0
            readonly property real textInset: halved || chooser.tablet ? 0 : chooser.wide ? 32 : Tokens.space.xxl
            readonly property real buttonInset: halved || chooser.tablet ? 0 : chooser.wide ? 32 : Tokens.space.l
            readonly property real rightInset: halved ? Tokens.space.l : column
            readonly property real foot: chooser.wide ? 32 : chooser.upright ? Tokens.space.xxl : Tokens.space.l
            readonly property real needed: words.y + words.height + (chooser.slim ? Tokens.space.m : Tokens.space.xxl) + buttons.height + foot

            width: scroller.width
            height: scroller.contentHeight

            Column {
                id: words
                x: page.column + page.textInset
                y: chooser.wide ? 36 : chooser.upright ? Tokens.space.xxl : chooser.slim ? Tokens.space.xs : 0
                width: page.width - x - page.rightInset - page.textInset
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
                    // A line of some sixty signs is read with ease.
                    width: Math.min(parent.width, 32 * font.pixelSize)
                    text: chooser.second
                        ? qsTranslate("Lamina", "This one lies on top. Move it, zoom it, let the first one shine through.")
                        : qsTranslate("Lamina", "This one stays in place. Pick something calm: a sky, a wall, the sea.")
                    color: Tokens.palette.textSecondary
                }
            }

            Icon {
                id: art
                readonly property real above: page.halved ? 0 : words.y + words.height
                readonly property real below: page.halved ? scroller.height - page.foot : buttons.y
                readonly property real room: page.halved ? page.column : page.width

                name: chooser.controller.selectImage
                // The backdrop is 360 by 300; where hardly any of it could be seen, it is left out.
                visible: height >= 96
                width: Math.min(room, Math.max(0, below - above) * 1.2, 432)
                height: width / 1.2
                x: (room - width) / 2
                y: above + (below - above - height) / 2

                // Its circle with the plus is what it looks like.
                RoundButton {
                    objectName: "circle"
                    readonly property real unit: art.width / 360
                    x: (chooser.second ? 224 : 136) * unit - width / 2
                    y: 150 * unit - height / 2
                    width: 2 * 104 * unit
                    height: width
                    onClicked: chooser.controller.cameraButton()
                }
            }

            Column {
                id: buttons
                x: page.column + page.buttonInset
                y: page.height - height - page.foot
                width: page.width - x - page.rightInset - page.buttonInset
                spacing: Tokens.space.m
                LaminaButton {
                    visible: chooser.controller.firstPhotoSetAside
                    width: parent.width
                    kind: "quiet"
                    iconName: "undo"
                    text: qsTranslate("Lamina", "Use the first photo again")
                    onClicked: {
                        library.focus = true // this button goes
                        chooser.controller.useFirstPhotoAgain()
                    }
                }
                LaminaButton {
                    id: library
                    width: parent.width
                    iconName: "Gallery"
                    text: qsTranslate("Lamina", "Photo library")
                    focus: true
                    onClicked: chooser.controller.cameraButton()
                }
                LaminaButton {
                    visible: chooser.controller.cameraAvailable
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
