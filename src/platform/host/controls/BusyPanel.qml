import QtQuick
import Lamina

// Work that takes its time: paper over the dark, with a way to give it up. Nothing is shown for the first moment, so
// that what is quick does not flicker.
Item {
    id: panel

    property string text
    property string cancelText
    property bool running: true
    signal cancelled()

    property bool due: false
    anchors.fill: parent
    visible: due && running
    onRunningChanged: due = false
    onVisibleChanged: if (visible) cancel.forceActiveFocus()
    Keys.onPressed: event => {
        event.accepted = KeyTable.find("back", event.key, event.modifiers) >= 0
        if (event.accepted)
            cancelled()
    }

    FontMetrics {
        id: letters
        font.pixelSize: Theme.textSize(Tokens.type.body.size)
        font.weight: Tokens.type.body.weightStrong
    }
    Timer {
        interval: 150
        running: panel.running && !panel.due
        onTriggered: panel.due = true
    }

    Scrim {
        busy: true
    }
    Paper {
        anchors.centerIn: parent
        width: Math.min(Math.max(156, column.implicitWidth + 2 * Tokens.space.xxl), parent.width - 2 * Tokens.space.l)
        height: column.implicitHeight + 2 * Tokens.space.xl
        radius: Tokens.radius.hud
        color: Tokens.palette.paperHud
        Column {
            id: column
            anchors.centerIn: parent
            spacing: Tokens.space.m
            BusyRing {
                anchors.horizontalCenter: parent.horizontalCenter
                running: panel.visible
            }
            StyledText {
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.min(implicitWidth, panel.width - 2 * (Tokens.space.l + Tokens.space.xxl))
                text: panel.text
                strong: true
                // A file's name may be one long word.
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                maximumLineCount: 3
                horizontalAlignment: Text.AlignHCenter
                color: Tokens.palette.overPaperHud
                Accessible.name: text
            }
            LaminaButton {
                id: cancel
                anchors.horizontalCenter: parent.horizontalCenter
                kind: "quiet"
                text: panel.cancelText
                width: Math.max(132, letters.advanceWidth(text) + 2 * Tokens.space.l)
                onClicked: panel.cancelled()
            }
        }
    }
}
