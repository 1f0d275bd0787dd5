import QtQuick
import Lamina

// The work that was left: how it looked, what it is and when, and two ways on from it.
Rectangle {
    id: card

    // The ViewController that offers it.
    required property var controller
    readonly property string title: qsTranslate("Lamina", "Not saved yet")
    readonly property real inset: Tokens.space.l
    readonly property real printSide: Math.max(64, Math.min(92, width * 0.28))

    implicitHeight: Math.ceil(Math.max(printSide + 40, words.height + buttons.height + 2 * inset))
    radius: Tokens.radius.homeCard
    color: Tokens.palette.panelRaised
    border.width: 1
    border.color: Tokens.palette.hairline
    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Accessible.description: controller.workLine

    Paper {
        id: sheet
        role: "print"
        width: card.printSide
        height: card.printSide
        rotation: -3
        x: card.inset
        y: (parent.height - height) / 2
        Picture {
            anchors.fill: parent
            anchors.margins: 5
            picture: card.controller.workPrint
            antialiasing: true
        }
    }
    Column {
        id: words
        x: sheet.x + sheet.width + Tokens.space.xl
        y: (parent.height - height - buttons.height - Tokens.space.xs) / 2
        width: parent.width - x - card.inset
        spacing: 2
        StyledText {
            width: parent.width
            text: card.title
            strong: true
            Accessible.ignored: true
        }
        StyledText {
            width: parent.width
            text: card.controller.workLine
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            Accessible.ignored: true
        }
    }
    Flow {
        id: buttons
        x: words.x
        y: words.y + words.height + Tokens.space.xs
        width: parent.width - x
        spacing: Tokens.space.xs
        LaminaButton {
            id: go
            kind: "pill"
            text: card.controller.workWasLeft ? qsTranslate("Lamina", "Reopen") : qsTranslate("Lamina", "Continue")
            Accessible.description: card.controller.workLine
            onClicked: card.controller.continueWork()
        }
        LaminaButton {
            height: go.height
            kind: "quiet"
            danger: true
            text: qsTranslate("Lamina", "Discard")
            Accessible.description: card.controller.workLine
            onClicked: card.controller.discardWork()
        }
    }
}
