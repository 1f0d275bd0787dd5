import QtQuick
import Lamina

// The work that was left: how it looked, what it is and when, and two ways on from it.
Rectangle {
    id: card

    // The ViewController that offers it.
    required property var controller
    readonly property string title: qsTranslate("Lamina", "Not saved yet")
    property bool low: false
    // Where there is room, words and buttons stand beside each other.
    readonly property bool broad: width >= 480
    readonly property real inset: Tokens.space.l
    readonly property real printSide: low ? 64 : Math.max(64, Math.min(92, width * 0.28))
    readonly property real wordsHeight: words.height + (broad ? 0 : buttons.height + Tokens.space.xs)

    implicitHeight: Math.ceil(Math.max(printSide + (low ? 28 : 40), wordsHeight + 2 * inset))
    radius: Tokens.radius.homeCard
    color: Tokens.palette.panelRaised
    border.width: 1
    border.color: Tokens.palette.hairline
    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Accessible.description: controller.workLine

    Print {
        id: sheet
        width: card.printSide
        height: card.printSide
        turn: -3
        x: card.inset
        y: (parent.height - height) / 2
        picture: card.controller.workPrint
        margin: 5
        radius: Tokens.radius.photoPrint
        color: Tokens.palette.paper
        shadowColor: Tokens.palette.shadow
        shadow: Tokens.elevation.photoPrint
    }
    Column {
        id: words
        x: sheet.x + sheet.width + Tokens.space.l
        y: (parent.height - card.wordsHeight) / 2
        width: (card.broad ? buttons.x : parent.width) - x - card.inset
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
        x: card.broad ? parent.width - width - card.inset : words.x
        y: card.broad ? (parent.height - height) / 2 : words.y + words.height + Tokens.space.xs
        width: card.broad ? go.width + spacing + away.width : parent.width - words.x
        layoutDirection: card.broad ? Qt.RightToLeft : Qt.LeftToRight
        spacing: Tokens.space.xs
        LaminaButton {
            id: go
            kind: "pill"
            text: card.controller.workWasLeft ? qsTranslate("Lamina", "Reopen") : qsTranslate("Lamina", "Continue")
            Accessible.description: card.controller.workLine
            onClicked: card.controller.continueWork()
        }
        LaminaButton {
            id: away
            width: implicitWidth - (card.broad ? 0 : Tokens.space.s)
            height: go.height
            kind: "quiet"
            danger: true
            text: qsTranslate("Lamina", "Discard")
            Accessible.description: card.controller.workLine
            onClicked: card.controller.discardWork()
        }
    }
}
