import QtQuick
import QtQuick.Templates as T
import Lamina

// A way into an editor: the whole card is the button. The print lies at the right or, on a tall card, over the words.
T.Button {
    id: card

    required property string title
    required property string line
    required property string art
    // By how many degrees the print lies askew.
    property real turn: 0
    property bool tall: false
    property bool soon: false
    // As high as the layout would have it; larger text makes the card higher.
    property real leastHeight: 140

    readonly property bool large: tall && width > 280
    readonly property real inset: large ? 32 : 20
    readonly property real foot: large ? 36 : 20
    // The print may be as large as this. Long titles and large text take room from it, down to a size at which it can
    // still be read. Cards beside each other agree on the smallest print and the highest words.
    readonly property real printRoom: tall
        ? Math.max(72, Math.min(236, width * 0.67, leastHeight - words.height - foot - inset - Tokens.space.l))
        : Math.max(88, Math.min(140, leastHeight - 2 * inset, width - 2 * inset - Tokens.space.m - titleText.implicitWidth))
    readonly property real wordsHeight: words.height
    property real printSide: printRoom
    property real highestWords: wordsHeight

    implicitHeight: Math.ceil(Math.max(leastHeight, highestWords + foot + (tall ? printSide + inset + Tokens.space.l : inset)))
    enabled: !soon
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: title
    Accessible.description: soon ? qsTranslate("Lamina", "Soon") : line
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Rectangle {
        radius: card.large ? Tokens.radius.homeCardWide : Tokens.radius.homeCard
        color: card.down ? Tokens.palette.cell : card.hovered && card.enabled ? Tokens.palette.panelAlert : Tokens.palette.panel
        border.width: 1
        border.color: card.hovered && card.enabled ? Tokens.palette.hairline : Tokens.palette.cardEdge
        FocusRing {
            radius: parent.radius
            control: card
        }
    }

    contentItem: Item {
        Paper {
            id: sheet
            role: "print"
            width: card.printSide
            height: card.printSide
            rotation: card.turn
            x: card.tall ? (parent.width - width) / 2 : parent.width - width - card.inset
            y: ((card.tall ? parent.height - card.foot - card.highestWords : parent.height) - height) / 2
            Icon {
                name: card.art
                size: card.printSide
                antialiasing: true
            }
            // What can't be had yet steps back behind a veil; the shadow would show through a faded print.
            Rectangle {
                anchors.fill: parent
                visible: card.soon
                radius: sheet.radius
                color: Tokens.palette.panel
                opacity: 0.35
                antialiasing: true
            }
        }
        Column {
            id: words
            x: card.inset
            y: parent.height - height - card.foot
            width: (card.tall ? parent.width - card.inset : sheet.x - Tokens.space.m) - card.inset
            spacing: Tokens.space.xs
            SoonMark {
                visible: card.soon
            }
            StyledText {
                id: titleText
                width: parent.width
                text: card.title
                topPadding: card.soon ? Tokens.space.xs : 0
                role: card.large ? Tokens.type.display : Tokens.type.title
                maximumLineCount: 2
                color: card.soon ? Tokens.palette.textDisabled : Tokens.palette.text
                Accessible.ignored: true
            }
            StyledText {
                width: parent.width
                text: card.line
                role: card.large ? Tokens.type.body : Tokens.type.caption
                maximumLineCount: Math.ceil(2 * Theme.textScale)
                color: card.soon ? Tokens.palette.textDisabled : Tokens.palette.textSecondary
                Accessible.ignored: true
            }
        }
    }
}
