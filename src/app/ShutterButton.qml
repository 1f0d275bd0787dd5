import QtQuick
import QtQuick.Templates as T
import Lamina

// Takes a photo: a disc in the accent within a white ring.
T.Button {
    id: button

    implicitWidth: 76
    implicitHeight: 76
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : Tokens.opacity.disabled
    Accessible.name: qsTranslate("Lamina", "Take a photo")
    Accessible.description: Theme.spoken(KeyTable.words("shutter"), enabled)
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)

    // A key that is still held from the screen before takes nothing.
    function press(event) {
        if (!event.isAutoRepeat)
            clicked()
    }

    background: Rectangle {
        radius: width / 2
        color: "transparent"
        border.width: 3
        border.color: Tokens.palette.toolLabel
        FocusRing {
            radius: parent.radius
            control: button
        }
    }
    contentItem: Item {
        Rectangle {
            anchors.centerIn: parent
            width: 60
            height: width
            radius: width / 2
            color: button.down ? Tokens.palette.accentPressed : button.hovered ? Tokens.palette.accentHover : Tokens.palette.accent
        }
    }
}
