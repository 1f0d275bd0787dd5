import QtQuick
import Lamina

// Selects one photo of a composition, which is shown as it looks now. What stands beside the picture is its user's.
Item {
    id: button

    required property string name
    // For those who hear the screen.
    property string description
    property var picture
    property real pictureOpacity: 1
    // Stands in the place of a picture that there never is.
    property string iconName
    // Behind the picture, over the paper.
    property color ground: "transparent"
    property bool selected: false
    property bool dimmed: false
    // The picture alone; a pointer that rests is told the name.
    property bool slim: false
    // On the picture where it stands alone.
    property string badge
    // Kept free at the right, for another control.
    property real endRoom: 0
    // Of the lines beside the picture.
    property real textHeight: 0
    // Something held over it would come here.
    property bool wanted: false
    // How much it calls for the eye, 0 to 1.
    property real call: 0
    default property alias words: beside.data
    // Handlers of what fingers do with it besides pressing.
    property alias handlers: choice.data
    signal clicked()
    // By a long press or the mouse's other button.
    signal held()

    implicitHeight: slim ? Tokens.bars.selector : Math.max(Tokens.bars.selector, textHeight + Tokens.space.m)
    // The tip lies over what stands below the button.
    z: tip.visible ? 1 : 0

    function takeFocus() {
        choice.forceActiveFocus(Qt.TabFocusReason)
    }

    Rectangle {
        anchors.fill: parent
        radius: Tokens.radius.selector
        color: button.wanted ? Tokens.palette.cell
             : button.selected || choice.down ? Tokens.palette.panelRaised
             : choice.hovered ? Tokens.palette.panel : Tokens.palette.field
        border.width: 1.5
        border.color: button.selected || button.wanted ? Tokens.palette.accentText : Tokens.palette.hairline
        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            visible: button.call > 0
            opacity: button.call
            radius: parent.radius + 3
            color: "transparent"
            border.width: 3
            border.color: Tokens.palette.accentText
        }
        FocusRing {
            radius: parent.radius
            control: choice
        }
    }

    ChoiceButton {
        id: choice

        // The texts may shrink to their width, their lines don't.
        readonly property string caption: button.description

        width: parent.width - button.endRoom
        height: parent.height
        chosen: button.selected
        Accessible.name: button.name
        Accessible.description: Theme.spoken(button.description, enabled)
        onClicked: button.clicked()
        onPressAndHold: button.held()
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.RightButton
            onPressed: button.held()
        }

        contentItem: Item {
            Rectangle {
                id: thumb
                x: button.slim ? (parent.width - width) / 2 : 7
                anchors.verticalCenter: parent.verticalCenter
                width: Tokens.thumbs.selector
                height: Tokens.thumbs.selector
                radius: Tokens.radius.thumb
                color: Tokens.palette.field
                opacity: button.dimmed ? Tokens.opacity.photoHeldFixed : 1
                // A photo that one can see through stands on paper, whose corners don't show beside the photo's own.
                Rectangle {
                    anchors.fill: parent
                    anchors.margins: 1
                    visible: !shown.empty
                    radius: Tokens.radius.thumb
                    color: Tokens.palette.paper
                    Rectangle {
                        anchors.fill: parent
                        radius: parent.radius
                        color: button.ground
                    }
                }
                Icon {
                    anchors.centerIn: parent
                    name: button.iconName !== "" ? button.iconName : "Gallery"
                    opacity: button.iconName !== "" ? 1 : Tokens.opacity.disabled
                    visible: shown.empty
                }
                Picture {
                    id: shown
                    anchors.fill: parent
                    picture: button.picture
                    opacity: button.pictureOpacity
                    radius: Tokens.radius.thumb
                }
                Rectangle {
                    visible: button.slim && button.badge !== ""
                    anchors.right: parent.right
                    anchors.bottom: parent.bottom
                    width: Math.max(height, sign.implicitWidth + Tokens.space.s)
                    height: Math.min(parent.height, sign.implicitHeight)
                    radius: Tokens.radius.thumb
                    color: Tokens.palette.field
                    StyledText {
                        id: sign
                        anchors.centerIn: parent
                        text: button.badge
                        role: Tokens.type.label
                        Accessible.ignored: true
                    }
                }
            }
            Item {
                id: beside
                visible: !button.slim
                anchors.left: thumb.right
                anchors.right: parent.right
                height: parent.height
            }
        }
    }

    Tip {
        id: tip
        text: button.name
        shown: button.slim && choice.hovered && !choice.down
    }
}
