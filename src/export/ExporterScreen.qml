import QtQuick
import Lamina

// An ExporterViewController: the file type, the options of that type, and the button that saves.
SheetScreen {
    id: exporter

    // The type in a word.
    required property string format
    // Where no option says it, the sheet tells how many pixels the file will have.
    property bool tellsPixels: true
    default property alias options: rows.data

    // What the next or the last control is, for arrows.
    function step(forward) {
        let item = Window.activeFocusItem
        do
            item = item.nextItemInFocusChain(forward)
        while (!holds(item))
        item.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason)
    }
    function holds(item) {
        while (item && item !== exporter)
            item = item.parent
        return item === exporter
    }

    name: qsTranslate("Lamina", "Save as %1").arg(format)
    footHeight: save.implicitHeight
    Keys.onPressed: event => {
        const way = KeyTable.find("row", event.key, event.modifiers)
        event.accepted = event.accepted || way === 0 || way === 1
        if (way === 0 || way === 1)
            step(way === 1)
    }
    KeyCommand {
        command: "save"
        enabled: exporter.activeFocus
        onActivated: exporter.controller.downloadbtnAction()
    }

    Column {
        id: rows

        width: parent.width
        spacing: Tokens.space.l

        // What this type makes of a clip.
        Rectangle {
            x: Tokens.space.sheetMargin
            width: parent.width - 2 * x
            height: notice.height + 2 * Tokens.space.m
            visible: notice.text !== ""
            radius: Tokens.radius.field
            color: Tokens.palette.panelRaised
            StyledText {
                id: notice
                x: Tokens.space.m
                y: Tokens.space.m
                width: parent.width - 2 * x
                text: exporter.controller.infoLbl
                role: Tokens.type.caption
                Accessible.name: text
            }
        }
        Column {
            width: parent.width
            spacing: Tokens.space.s
            FieldButton {
                name: qsTranslate("Lamina", "File type")
                value: exporter.controller.typeTitle
                iconName: exporter.controller.typeIcon
                suggested: exporter.controller.suggested
                onClicked: exporter.controller.handlefileTap()
            }
            StyledText {
                x: Tokens.space.sheetMargin
                width: parent.width - 2 * x
                visible: exporter.tellsPixels && text !== ""
                text: exporter.controller.filePixels
                role: Tokens.type.caption
                color: Tokens.palette.textSecondary
                Accessible.name: text
            }
        }
    }

    foot: LaminaButton {
        id: save
        width: parent.width
        focus: true
        text: qsTranslate("Lamina", "Save %1").arg(exporter.format)
        // The progress panel over it says why it can't be pressed.
        enabled: exporter.controller.ready || exporter.controller.exporting
        onClicked: exporter.controller.downloadbtnAction()
        // While a clip was read something else had the keyboard.
        onEnabledChanged: if (enabled && exporter.activeFocus) forceActiveFocus(Qt.OtherFocusReason)
    }
}
