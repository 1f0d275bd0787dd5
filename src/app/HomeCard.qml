import QtQuick
import QtQuick.Templates as T
import Lamina

// A way into an editor: the whole card is the button. The print lies at the right or, on a tall card, over the words.
T.Button {
    id: card

    required property string title
    required property string line
    // What lies on the print: a drawing that covers it, or a picture inside its margin.
    required property string art
    required property var picture
    // By how many degrees the print lies askew.
    property real turn: 0
    // The HomeLayout, which all cards share.
    required property var layout

    readonly property bool tall: !layout.stacked
    readonly property real wordsHeight: words.height
    // As high as the layout would have it; larger text makes the card higher.
    readonly property real needed: tall
        ? layout.wordsHeight + layout.cardFoot + layout.printSide + layout.inset + Tokens.space.l
        : wordsHeight + layout.cardFoot + (layout.listed ? layout.cardFoot : layout.inset)

    implicitHeight: Math.ceil(Math.max(layout.cardHeight, needed))
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: title
    Accessible.description: line
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Rectangle {
        radius: card.layout.large ? Tokens.radius.homeCardWide : Tokens.radius.homeCard
        color: card.down ? Tokens.palette.cell : card.hovered ? Tokens.palette.panelAlert : Tokens.palette.panel
        border.width: 1
        border.color: card.hovered ? Tokens.palette.hairline : Tokens.palette.cardEdge
        FocusRing {
            radius: parent.radius
            control: card
        }
    }

    contentItem: Item {
        Print {
            id: sheet
            width: card.layout.printSide
            height: card.layout.printSide
            turn: card.turn
            x: Math.round(card.tall ? (parent.width - width) / 2 : parent.width - width - card.layout.printInset)
            y: Math.round(((card.tall ? parent.height - card.layout.cardFoot - card.layout.wordsHeight : parent.height) - height) / 2)
            art: card.art
            picture: card.picture
            margin: width / 20
            radius: Tokens.radius.photoPrint
            color: Tokens.palette.paper
            shadowColor: Tokens.palette.shadow
            shadow: Tokens.elevation.photoPrint
        }
        Column {
            id: words
            x: card.layout.inset
            y: parent.height - height - card.layout.cardFoot
            width: card.width - 2 * card.layout.inset - (card.tall ? 0 : card.layout.printSide + Tokens.space.m)
            spacing: Tokens.space.xs
            StyledText {
                width: parent.width
                text: card.title
                role: card.layout.titleRole
                font.pixelSize: card.layout.titleSize
                maximumLineCount: card.tall ? 1 : 2
                color: Tokens.palette.text
                Accessible.ignored: true
            }
            StyledText {
                width: parent.width
                text: card.line
                role: card.layout.large ? Tokens.type.body : Tokens.type.caption
                maximumLineCount: card.layout.listed ? 1 : Math.ceil(2 * card.layout.scale)
                color: Tokens.palette.textSecondary
                Accessible.ignored: true
            }
        }
    }
}
