import QtQuick
import Lamina

// A UIAlertController: a question in the middle, or a sheet of choices.
AppScreen {
    id: alert

    readonly property bool isSheet: controller.preferredStyle === 0
    readonly property int cancelIndex: controller.cancelIndex()

    function giveUp() {
        if (cancelIndex >= 0)
            controller.tap(cancelIndex)
    }

    Keys.onEscapePressed: giveUp()
    Keys.onBackPressed: giveUp()
    onActiveFocusChanged: {
        if (activeFocus && panel.item && panel.item.focusSafe)
            panel.item.focusSafe()
    }

    Scrim {
        onTapped: if (alert.isSheet) alert.giveUp()
    }

    Loader {
        id: panel
        anchors.fill: parent
        sourceComponent: alert.isSheet ? sheet : question
        focus: true
    }

    Component {
        id: question
        Item {
            function focusSafe() { box.focusSafe() }
            AlertPanel {
                id: box
                anchors.centerIn: parent
                width: Math.min(296, parent.width - 2 * Tokens.space.l)
                height: Math.min(implicitHeight, parent.height - Tokens.space.xxl)
                title: alert.controller.title
                message: alert.controller.message
                answers: alert.controller.actionList
                cancelIndex: alert.cancelIndex
                onChosen: index => alert.controller.tap(index)
                Component.onCompleted: focusSafe()
            }
        }
    }

    Component {
        id: sheet
        SheetPanel {
            card: !alert.upright
            title: alert.controller.title
            contentHeight: rows.height
            onClosed: alert.giveUp()
            Flickable {
                anchors.fill: parent
                contentHeight: rows.height
                interactive: contentHeight > height
                clip: interactive
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
                    }
                    Repeater {
                        model: alert.controller.actionList
                        delegate: FolderRow {
                            required property var modelData
                            required property int index
                            width: rows.width
                            name: modelData.title
                            plain: true
                            danger: modelData.style === 2
                            focus: index === 0
                            onClicked: alert.controller.tap(index)
                        }
                    }
                }
            }
        }
    }
}
