import QtQuick
import QtQuick.Templates as T
import Lamina

// One picture of a strip or a grid, as its ThumbnailStyle says. The list that it is in is one stop for the keyboard,
// and leads it here.
T.Button {
    id: thumbnail

    required property int index
    required property int tag
    required property string name
    required property var picture
    required property var model
    required property ThumbnailStyle style
    // It is in force.
    property bool marked: false
    // The name comes to a pointer that rests.
    property bool tipped: false

    // Of the name under it, which gets smaller before it is cut.
    readonly property int labelSize: fit.size
    readonly property bool ringed: activeFocus && Host.focusVisible

    hoverEnabled: true
    focusPolicy: Qt.ClickFocus
    Accessible.name: name
    Accessible.selectable: style.marks
    Accessible.selected: marked
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: event => pressOnce(event)
    Keys.onEnterPressed: event => pressOnce(event)

    LabelFit {
        id: fit
        texts: thumbnail.style.captioned ? [thumbnail.name] : []
        room: thumbnail.width
        role: Tokens.type.label
        weight: Tokens.type.label.weightActive
    }

    // A key that is held adds one.
    function pressOnce(event) {
        if (!event.isAutoRepeat)
            clicked()
    }

    background: Item {
        Rectangle {
            id: chip
            width: parent.width
            height: width
            radius: thumbnail.style.radius
            color: thumbnail.down ? Tokens.palette.cell : thumbnail.hovered ? Tokens.palette.panelRaised : Tokens.palette.chip
            // What is chosen has a ring; the keyboard's takes its place.
            Rectangle {
                anchors.fill: parent
                anchors.margins: -4.5
                visible: thumbnail.marked && !thumbnail.ringed
                radius: parent.radius + 4.5
                color: "transparent"
                border.width: 2
                border.color: Tokens.palette.accentText
            }
            FocusRing {
                radius: parent.radius
                control: thumbnail
            }
        }
    }
    contentItem: Item {
        Picture {
            x: thumbnail.style.inset
            y: x
            width: parent.width - 2 * x
            height: width
            cutOut: thumbnail.style.cutOut
            radius: thumbnail.style.cutOut ? 0 : thumbnail.style.radius
            picture: thumbnail.marked && thumbnail.model.activePicture ? thumbnail.model.activePicture : thumbnail.picture
            opacity: thumbnail.down && !thumbnail.style.cutOut ? Tokens.opacity.pressedIcon : 1
        }
        Rectangle {
            visible: thumbnail.style.edged
            width: parent.width
            height: width
            radius: thumbnail.style.radius
            color: "transparent"
            border.width: 1
            border.color: Tokens.palette.paper
        }
        StyledText {
            visible: thumbnail.style.captioned
            y: parent.width + thumbnail.style.captionGap
            width: parent.width
            text: thumbnail.name
            role: Tokens.type.label
            font.pixelSize: thumbnail.labelSize
            font.weight: thumbnail.marked ? Tokens.type.label.weightActive : 400
            wrapMode: Text.NoWrap
            maximumLineCount: 1
            horizontalAlignment: Text.AlignHCenter
            color: thumbnail.marked ? Tokens.palette.accentText : Tokens.palette.textSecondary
            Accessible.ignored: true
        }
    }

    // The tip lies over what stands below.
    z: tip.active ? 1 : 0
    Loader {
        id: tip
        width: parent.width
        height: parent.height
        active: thumbnail.tipped && thumbnail.hovered && !thumbnail.down
        sourceComponent: Item {
            Tip {
                text: thumbnail.name
                shown: true
            }
        }
    }
}
