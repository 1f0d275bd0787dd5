import QtQuick
import Lamina

// A tool in a bar: its icon over its name. Which one is active, which cell is grey and what is on, the controller says.
ChoiceButton {
    id: cell

    required property string label
    required property string iconName
    property bool active: false
    property bool gray: false
    property bool current: active
    // The main one of its bar: its icon lies on a disc of the accent.
    property bool disc: false
    // The colour that the tool would change, as a disc on its icon; clear: none.
    property color swatch: "transparent"
    // Pixels of the name's letters; a row gives all of its cells the same.
    property int labelSize: Theme.textSize(Tokens.type.label.size)

    implicitWidth: 68
    implicitHeight: Math.max(Tokens.touch.toolCell, name.y + name.implicitHeight + 9)
    chosen: current
    Accessible.name: label
    Accessible.description: Theme.spoken(swatch.a > 0 ? swatch.toString() : "", enabled)

    background: Rectangle {
        radius: Tokens.radius.cell
        color: cell.gray ? Tokens.palette.cell : cell.hovered && cell.enabled ? Tokens.palette.panelRaised : "transparent"
        FocusRing {
            radius: parent.radius
            control: cell
        }
    }
    contentItem: Item {
        opacity: !cell.enabled ? Tokens.opacity.disabled : cell.down ? Tokens.opacity.pressedIcon : 1
        Rectangle {
            visible: cell.disc
            anchors.centerIn: icon
            width: 40
            height: 40
            radius: 20
            color: cell.down ? Tokens.palette.accentPressed : cell.hovered && cell.enabled ? Tokens.palette.accentHover : Tokens.palette.accent
        }
        Icon {
            id: icon
            anchors.horizontalCenter: parent.horizontalCenter
            y: cell.disc ? 3 : 9
            name: cell.iconName
        }
        Rectangle {
            visible: cell.swatch.a > 0
            x: icon.x + icon.width - 10
            y: icon.y + icon.height - 11
            width: 14
            height: 14
            radius: 7
            color: cell.gray ? Tokens.palette.cell : Tokens.palette.panel
            Rectangle {
                anchors.fill: parent
                anchors.margins: 1.5
                radius: width / 2
                color: cell.swatch
                border.width: 1
                border.color: Tokens.palette.toolLabel
            }
        }
        StyledText {
            id: name
            y: 37
            width: cell.width
            horizontalAlignment: Text.AlignHCenter
            text: cell.label
            role: Tokens.type.label
            font.pixelSize: cell.labelSize
            font.weight: cell.active ? Tokens.type.label.weightActive : Tokens.type.label.weight
            lineHeight: Math.round(Tokens.type.label.line * cell.labelSize / Tokens.type.label.size)
            wrapMode: Text.NoWrap
            color: cell.active ? Tokens.palette.accentText : Tokens.palette.toolLabel
            Accessible.ignored: true
        }
    }
}
