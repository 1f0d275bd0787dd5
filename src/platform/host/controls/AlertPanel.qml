import QtQuick
import Lamina

// A question in the middle of the window: its words, and the answers in their order. Words that don't fit are scrolled;
// the answers stay in sight.
Rectangle {
    id: panel

    required property string title
    required property string message
    // Of {title, style}; the style is a UIAlertActionStyle.
    required property var answers
    property int cancelIndex: -1
    signal chosen(int index)

    // The platform writes a warning as a sign for a title; here it is drawn.
    readonly property bool warning: title === "⚠️"
    readonly property string headline: warning ? message : title
    readonly property string words: warning ? "" : message
    // Of two answers to a warning the first one loses work.
    readonly property bool losesWork: warning && answers.length === 2
    readonly property int safe: losesWork ? 1 : cancelIndex >= 0 ? cancelIndex : answers.length - 1

    // The buttons, for whoever moves between them.
    readonly property alias choices: buttons

    readonly property real inset: Tokens.space.l
    readonly property real above: warning ? 26 : Tokens.space.xl
    readonly property real between: warning ? Tokens.space.xxl : Tokens.space.xl

    implicitHeight: above + column.height + between + grid.height + inset
    radius: Tokens.radius.alert
    color: Tokens.palette.panelAlert
    border.width: 1
    border.color: Tokens.palette.hairline
    Accessible.role: Accessible.AlertMessage
    Accessible.name: headline
    Accessible.description: words

    function focusSafe() {
        if (buttons.itemAt(safe))
            buttons.itemAt(safe).forceActiveFocus(Qt.TabFocusReason)
    }

    // Leaves without an answer: by the cancelling one, or the one that keeps the work; not at all where there is
    // neither.
    function giveUp() {
        if (cancelIndex >= 0 || losesWork)
            chosen(cancelIndex >= 0 ? cancelIndex : safe)
    }

    ScrollPage {
        id: scroller
        x: panel.inset
        y: panel.above
        width: parent.width - 2 * panel.inset
        height: grid.y - panel.between - y
        contentHeight: column.height
        reading: true
        clip: interactive
        Accessible.role: Accessible.Pane
        Accessible.name: panel.words
        Accessible.ignored: !interactive

        Column {
            id: column
            width: scroller.width
            spacing: panel.warning ? 14 : Tokens.space.s

            Rectangle {
                visible: panel.warning
                anchors.horizontalCenter: parent.horizontalCenter
                width: 52
                height: 52
                radius: 26
                color: Tokens.palette.warningFill
                Icon {
                    anchors.centerIn: parent
                    name: "warning"
                }
            }
            StyledText {
                width: parent.width
                text: panel.headline
                role: Tokens.type.title
                horizontalAlignment: panel.warning ? Text.AlignHCenter : Text.AlignLeft
                Accessible.ignored: true // the panel says it
            }
            StyledText {
                width: parent.width
                visible: text !== ""
                text: panel.words
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                Accessible.ignored: true
                color: Tokens.palette.textSecondary
            }
        }
    }

    Grid {
        id: grid

        readonly property int count: panel.answers.length
        readonly property real share: (width - (count - 1) * spacing) / Math.max(1, count)
        readonly property bool stacked: count > 2 || panel.answers.some(answer => letters.advanceWidth(answer.title) > share - 2 * panel.inset)

        x: panel.inset
        y: parent.height - height - panel.inset
        width: parent.width - 2 * panel.inset
        columns: stacked ? 1 : count
        spacing: Tokens.space.s

        FontMetrics {
            id: letters
            font.pixelSize: Theme.textSize(Tokens.type.body.size)
            font.weight: Tokens.type.body.weightStrong
        }
        Repeater {
            id: buttons
            model: panel.answers
            delegate: LaminaButton {
                required property var modelData
                required property int index
                width: grid.stacked ? grid.width : grid.share
                kind: "quiet"
                text: modelData.title
                danger: modelData.style === 2 || (panel.losesWork && index === 0)
                onClicked: panel.chosen(index)
            }
        }
    }
}
