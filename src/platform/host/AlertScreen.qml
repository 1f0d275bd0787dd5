import QtQuick
import Lamina

// A UIAlertController: a question in the middle, or a sheet of choices.
AppScreen {
    id: alert

    readonly property bool isSheet: controller.preferredStyle === 0
    readonly property int cancelIndex: controller.cancelIndex()

    function takeFocus() {
        if (activeFocus && panel.item)
            panel.item.focusSafe()
    }
    function giveUp() {
        if (!isSheet)
            panel.item.giveUp()
        else if (cancelIndex >= 0)
            controller.tap(cancelIndex)
    }

    Keys.onEscapePressed: giveUp()
    Keys.onBackPressed: giveUp()
    // The panel may come after the focus does.
    onActiveFocusChanged: takeFocus()
    Component.onCompleted: takeFocus()

    Scrim {
        onTapped: if (alert.isSheet) alert.giveUp()
    }

    Loader {
        id: panel
        anchors.fill: alert.isSheet ? parent : undefined
        anchors.centerIn: alert.isSheet ? undefined : parent
        sourceComponent: alert.isSheet ? sheet : question
        focus: true
    }

    Component {
        id: question
        AlertPanel {
            // Larger letters get a wider panel, as far as there is room.
            width: Math.min(296 * Math.max(1, Theme.textScale), 480, alert.width - 2 * Tokens.space.l)
            height: Math.min(implicitHeight, alert.height - Tokens.space.xxl)
            title: alert.controller.title
            message: alert.controller.message
            answers: alert.controller.actionList
            cancelIndex: alert.cancelIndex
            onChosen: index => alert.controller.tap(index)
        }
    }

    Component {
        id: sheet
        SheetPanel {
            function focusSafe() {
                if (choices.count > 0)
                    choices.itemAt(Math.max(0, alert.cancelIndex)).forceActiveFocus(Qt.TabFocusReason)
            }

            card: alert.sheetsAreCards
            closable: alert.cancelIndex >= 0
            title: alert.controller.title
            contentHeight: rows.height
            onClosed: alert.giveUp()

            ScrollPage {
                anchors.fill: parent
                contentHeight: rows.height
                clip: interactive
                slack: 0
                onContentHeightChanged: Qt.callLater(reveal)
                Column {
                    id: rows
                    width: parent.width
                    StyledText {
                        x: Tokens.space.sheetMargin
                        width: parent.width - 2 * x
                        bottomPadding: Tokens.space.s
                        visible: text !== ""
                        text: alert.controller.message
                        role: Tokens.type.caption
                        color: Tokens.palette.textSecondary
                        Accessible.name: text
                    }
                    Repeater {
                        id: choices
                        model: alert.controller.actionList
                        delegate: FolderRow {
                            required property var modelData
                            required property int index
                            width: rows.width
                            name: modelData.title
                            plain: true
                            danger: modelData.style === 2
                            onClicked: alert.controller.tap(index)
                        }
                    }
                }
            }
        }
    }
}
