import QtQuick
import QtQuick.Templates as T
import Lamina

// A button that is only an icon. It has a name for those who hear the screen, and shows it to a pointer that rests.
T.Button {
    id: button

    required property string iconName
    required property string name

    implicitWidth: Tokens.touch.iconButton
    implicitHeight: Tokens.touch.iconButton
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: name
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Rectangle {
        radius: Tokens.radius.cell
        color: button.hovered && button.enabled ? Tokens.palette.outline : "transparent"
        FocusRing {
            radius: parent.radius
            shown: button.visualFocus
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
        shown: button.hovered && button.enabled && !button.down
    }
}
