import QtQuick
import QtQuick.Templates as T
import Lamina

// A button of the picker's screens, in the colours that they are dressed in: words, an icon, or both.
T.Button {
    id: button

    // Of the controller: colours by their names.
    required property var theme
    property string iconName
    property color tint: theme.tintColor
    property bool strong: false
    // On a ground of its own, where no bar is beneath.
    property bool filled: false
    // What it is called where it has no words.
    property string name: text
    // Of the KeyTable; empty: no keys.
    property string command

    readonly property real sides: filled ? Tokens.space.xl : Tokens.space.s
    readonly property real iconRoom: iconName === "" ? 0 : Tokens.icon.grid + (text === "" ? 0 : Tokens.space.s)

    implicitWidth: Math.max(Tokens.touch.minimum, Math.ceil(fit.widest) + 1 + iconRoom + 2 * sides)
    implicitHeight: Math.max(Tokens.touch.minimum, words.implicitHeight + (filled ? Tokens.space.l : 0))
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: name
    Accessible.description: Theme.spoken(command === "" ? "" : KeyTable.words(command), enabled)
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    LabelFit {
        id: fit
        texts: [button.text]
        room: button.width
        role: Tokens.type.body
        weight: words.font.weight
    }
    background: Rectangle {
        radius: button.filled ? Tokens.radius.button : Tokens.radius.cell
        color: button.filled ? button.theme.orderTintColor : Qt.alpha(button.tint, button.hovered && button.enabled ? 0.1 : 0)
        FocusRing {
            radius: parent.radius
            inside: true
            control: button
        }
    }
    contentItem: Item {
        Row {
            anchors.centerIn: parent
            spacing: Tokens.space.s
            opacity: !button.enabled ? Tokens.opacity.disabled : button.down ? Tokens.opacity.pressedIcon : 1
            Icon {
                visible: name !== ""
                anchors.verticalCenter: parent.verticalCenter
                name: button.iconName
                tint: button.tint
            }
            StyledText {
                id: words
                visible: text !== ""
                anchors.verticalCenter: parent.verticalCenter
                text: button.text
                strong: button.strong
                color: button.tint
                wrapMode: Text.NoWrap
                Accessible.ignored: true
            }
        }
    }

    Tip {
        text: button.name
        command: button.command
        shown: button.text === "" && !button.down && ((button.hovered && button.enabled) || (button.activeFocus && Host.focusVisible))
    }
}
