import QtQuick
import QtQuick.Templates as T
import Lamina

// A tool in a bar: its icon over its name. Which one is active, and which cell is grey, the controller says.
T.Button {
    id: cell

    required property string label
    required property string iconName
    property bool active: false
    property bool gray: false

    implicitWidth: 68
    implicitHeight: Math.max(Tokens.touch.toolCell, 34 + name.implicitHeight + 10)
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: label
    Accessible.checkable: true
    Accessible.checked: active
    Keys.onReturnPressed: click()
    Keys.onEnterPressed: click()

    background: Rectangle {
        radius: Tokens.radius.cell
        color: cell.gray ? Tokens.palette.cell : cell.hovered && cell.enabled ? Tokens.palette.panelRaised : "transparent"
        FocusRing {
            radius: parent.radius
            shown: cell.visualFocus
        }
    }
    contentItem: Item {
        opacity: !cell.enabled ? Tokens.opacity.disabled : cell.down ? Tokens.opacity.pressedIcon : 1
        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 6
            name: cell.iconName
        }
        StyledText {
            id: name
            anchors.horizontalCenter: parent.horizontalCenter
            y: 34
            width: Math.min(implicitWidth, cell.width)
            text: cell.label
            role: Tokens.type.label
            font.weight: cell.active ? Tokens.type.label.weightActive : Tokens.type.label.weight
            wrapMode: Text.NoWrap
            color: cell.active ? Tokens.palette.accentText : Tokens.palette.toolLabel
        }
    }
}
