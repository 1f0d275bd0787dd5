import QtQuick
import QtQuick.Templates as T
import Lamina

// A button that is only an icon. It has a name for those who hear the screen, and shows it to a pointer that rests and
// to the keyboard.
T.Button {
    id: button

    required property string iconName
    required property string name
    // What it does in the KeyTable, where keys do it too.
    property string command
    // What it opens is open.
    property bool lit: false

    implicitWidth: Tokens.touch.iconButton
    implicitHeight: Tokens.touch.iconButton
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: name
    Accessible.description: Theme.spoken(KeyTable.words(command), enabled)
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Rectangle {
        radius: Tokens.radius.cell
        color: button.lit ? Tokens.palette.cell : button.hovered && button.enabled ? Tokens.palette.outline : "transparent"
        FocusRing {
            radius: parent.radius
            control: button
        }
    }
    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: button.iconName
            opacity: !button.enabled ? Tokens.opacity.disabled : button.down ? Tokens.opacity.pressedIcon : 1
        }
    }

    // The tip lies over what stands below the button.
    z: tip.visible ? 1 : 0
    Tip {
        id: tip
        text: button.name
        command: button.command
        shown: !button.down && ((button.hovered && button.enabled) || (button.activeFocus && Host.focusVisible))
    }
}
