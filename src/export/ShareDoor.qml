import QtQuick
import QtQuick.Templates as T
import Lamina

// A door to the share sheet: a sign on a tile, and its name under it where there is room.
T.Button {
    id: door

    required property string name
    required property string iconName
    property bool named: true

    readonly property real tileSide: 60

    implicitWidth: 68
    implicitHeight: tileSide + (named ? Tokens.space.s + label.height : 0)
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: name
    Accessible.description: qsTranslate("Lamina", "Opens the list of what can be done with the file")
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: door.tileSide
            height: width
            radius: Tokens.radius.tray
            color: door.down ? Tokens.palette.field : door.hovered ? Tokens.palette.cell : Tokens.palette.panelRaised
            FocusRing {
                radius: parent.radius
                control: door
            }
            Icon {
                anchors.centerIn: parent
                name: door.iconName
                opacity: door.down ? Tokens.opacity.pressedIcon : 1
            }
        }
        StyledText {
            id: label
            visible: door.named
            y: door.tileSide + Tokens.space.s
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: door.name
            role: Tokens.type.label
            font.pixelSize: fit.size
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }
    }
    LabelFit {
        id: fit
        texts: [door.name]
        room: door.width
        role: Tokens.type.label
    }
    Tip {
        text: door.name
        shown: !door.named && !door.down && (door.hovered || (door.activeFocus && Host.focusVisible))
    }
}
