import QtQuick
import Lamina

// A UIAlertController: a question in the middle, or a sheet of choices.
AppScreen {
    id: alert

    readonly property bool isSheet: controller.preferredStyle === 0
    readonly property int cancelIndex: controller.cancelIndex()

    // Arrows go from answer to answer, and round.
    function moveBetween(answers, by) {
        let at = by > 0 ? -1 : 0
        for (let i = 0; i < answers.count; ++i)
            if (answers.itemAt(i).activeFocus)
                at = i
        answers.itemAt((at + by + answers.count) % answers.count).forceActiveFocus(Qt.TabFocusReason)
    }

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

    sheet: isSheet
    name: isSheet || !panel.item ? controller.title : panel.item.headline
    onBack: giveUp()
    Keys.onPressed: event => {
        // Left and up go back, right and down go on.
        const way = KeyTable.find("row", event.key, event.modifiers)
        event.accepted = event.accepted || way >= 0
        if (way >= 0)
            moveBetween(panel.item.choices, way % 2 === 0 ? -1 : 1)
    }
    // The panel may come after the focus does.
    onActiveFocusChanged: takeFocus()
    Component.onCompleted: takeFocus()

    Scrim {
        shown: !alert.isSheet || !panel.item || panel.item.up
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
            readonly property alias choices: rowsOfChoices

            function focusSafe() {
                if (choices.count > 0)
                    choices.itemAt(Math.max(0, alert.cancelIndex)).forceActiveFocus(Qt.TabFocusReason)
            }

            card: alert.sheetsAreCards
            shown: alert.shown
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
                        id: rowsOfChoices
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
