import QtQuick
import QtQuick.Templates as T
import Lamina

// One picture of a strip or a grid, cut out on its chip. The list that it is in is one stop for the keyboard, and
// leads it here. The name is told and, where it is `named`, shown to a pointer that rests.
T.Button {
    id: thumbnail

    required property int index
    required property int tag
    required property string name
    required property var picture
    property bool named: false

    hoverEnabled: true
    focusPolicy: Qt.ClickFocus
    Accessible.name: name
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: event => pressOnce(event)
    Keys.onEnterPressed: event => pressOnce(event)

    // A key that is held adds one.
    function pressOnce(event) {
        if (!event.isAutoRepeat)
            clicked()
    }

    background: Rectangle {
        radius: Tokens.radius.cell
        color: thumbnail.down ? Tokens.palette.cell : thumbnail.hovered ? Tokens.palette.panelRaised : Tokens.palette.chip
        FocusRing {
            radius: parent.radius
            control: thumbnail
        }
    }
    contentItem: Item {
        Picture {
            anchors.fill: parent
            anchors.margins: Tokens.space.xs + 2
            cutOut: true
            picture: thumbnail.picture
        }
    }

    // The tip lies over what stands below.
    z: tip.active ? 1 : 0
    Loader {
        id: tip
        width: parent.width
        height: parent.height
        active: thumbnail.named && thumbnail.hovered && !thumbnail.down
        sourceComponent: Item {
            Tip {
                text: thumbnail.name
                shown: true
            }
        }
    }
}
