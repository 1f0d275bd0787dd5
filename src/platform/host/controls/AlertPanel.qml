import QtQuick
import Lamina

// A question in the middle of the window: its words, and the answers in their order.
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

    readonly property real inset: Tokens.space.l
    readonly property bool stacked: answers.length > 2 || widestAnswer > (width - 2 * inset - Tokens.space.s) / Math.max(1, answers.length)
    readonly property real widestAnswer: {
        let widest = 0
        for (let i = 0; i < buttons.count; ++i)
            if (buttons.itemAt(i))
                widest = Math.max(widest, buttons.itemAt(i).implicitWidth)
        return widest
    }

    implicitHeight: column.implicitHeight + 2 * inset + (warning ? 10 : 4)
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

    Flickable {
        id: scroller
        anchors.fill: parent
        anchors.margins: panel.inset
        contentHeight: column.height
        interactive: contentHeight > height
        clip: interactive
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: column
            width: scroller.width
            topPadding: panel.warning ? 10 : 4
            spacing: Tokens.space.s

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
                topPadding: panel.warning ? Tokens.space.s : 0
                horizontalAlignment: panel.warning ? Text.AlignHCenter : Text.AlignLeft
            }
            StyledText {
                width: parent.width
                visible: text !== ""
                text: panel.words
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                color: Tokens.palette.textSecondary
            }
            Item {
                width: 1
                height: 1
            }
            Grid {
                width: parent.width
                columns: panel.stacked ? 1 : panel.answers.length
                spacing: Tokens.space.s
                Repeater {
                    id: buttons
                    model: panel.answers
                    delegate: LaminaButton {
                        required property var modelData
                        required property int index
                        width: panel.stacked ? column.width
                             : (column.width - (panel.answers.length - 1) * Tokens.space.s) / panel.answers.length
                        kind: "quiet"
                        text: modelData.title
                        danger: modelData.style === 2 || (panel.losesWork && index === 0)
                        onClicked: panel.chosen(index)
                    }
                }
            }
        }
    }
}
