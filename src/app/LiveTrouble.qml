import QtQuick
import Lamina

// In a live picture's place: why there is none, and what can be done.
Rectangle {
    id: trouble

    // A LiveViewController.
    required property var controller

    visible: controller.trouble !== ""
    color: Tokens.palette.panel

    ScrollPage {
        anchors.fill: parent
        contentHeight: Math.max(height, column.height + 2 * Tokens.space.m)
        clip: interactive

        Column {
            id: column
            anchors.centerIn: parent
            width: Math.min(parent.width - 2 * Tokens.space.l, 320)
            spacing: Tokens.space.m

            Icon {
                anchors.horizontalCenter: parent.horizontalCenter
                name: trouble.controller.source === "movie" ? "movie" : "camera"
                opacity: Tokens.opacity.disabled
                size: 40
            }
            StyledText {
                width: parent.width
                text: trouble.controller.trouble
                role: Tokens.type.body
                horizontalAlignment: Text.AlignHCenter
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }
            LaminaButton {
                width: parent.width
                kind: "quiet"
                text: trouble.controller.denied ? qsTranslate("Lamina", "Settings") : qsTranslate("Lamina", "Try again")
                onClicked: trouble.controller.denied ? trouble.controller.openSettings() : trouble.controller.tryAgain()
            }
            LaminaButton {
                width: parent.width
                kind: "quiet"
                iconName: "movie"
                text: qsTranslate("Lamina", "Choose a movie")
                onClicked: trouble.controller.chooseMovie()
            }
        }
    }
}
