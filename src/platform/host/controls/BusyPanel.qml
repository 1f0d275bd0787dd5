import QtQuick
import Lamina

// Work that takes its time: paper over the dark, with a way to give it up. Nothing is shown for the first moment, so that what is
// quick does not flicker.
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
    Keys.onEscapePressed: cancelled()

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
                width: Math.min(implicitWidth, 240)
                text: panel.text
                strong: true
                maximumLineCount: 2
                elide: Text.ElideMiddle
                horizontalAlignment: Text.AlignHCenter
                color: Tokens.palette.overPaperHud
                Accessible.role: Accessible.StaticText
            }
            LaminaButton {
                id: cancel
                anchors.horizontalCenter: parent.horizontalCenter
                kind: "quiet"
                text: panel.cancelText
                implicitWidth: 132
                onClicked: panel.cancelled()
            }
        }
    }
}
