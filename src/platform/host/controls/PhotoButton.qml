import QtQuick
import Lamina

// Selects one photo of a composition: how it looks now, its name, and where it lies.
ChoiceButton {
    id: button

    required property string title
    required property string caption
    property var picture
    property bool selected: false
    property bool dimmed: false
    // The picture alone; a pointer that rests is told the name.
    property bool slim: false
    readonly property bool narrow: width < 160

    // The texts may shrink to their width, their lines don't.
    implicitHeight: slim ? Tokens.bars.selector
        : Math.max(Tokens.bars.selector, titleText.lineHeight + captionText.lineHeight + Tokens.space.m)
    chosen: selected
    Accessible.name: title
    Accessible.description: Theme.spoken(caption, enabled)

    background: Rectangle {
        radius: Tokens.radius.selector
        color: button.selected || button.down ? Tokens.palette.panelRaised : button.hovered ? Tokens.palette.panel : Tokens.palette.field
        border.width: 1.5
        border.color: button.selected ? Tokens.palette.accentText : Tokens.palette.hairline
        FocusRing {
            radius: parent.radius
            control: button
        }
    }
    contentItem: Item {
        Rectangle {
            id: thumb
            x: 7
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
            }
            Icon {
                anchors.centerIn: parent
                name: "Gallery"
                opacity: Tokens.opacity.disabled
                visible: shown.empty
            }
            Picture {
                id: shown
                anchors.fill: parent
                picture: button.picture
                radius: Tokens.radius.thumb
            }
        }
        Column {
            visible: !button.slim
            anchors.left: thumb.right
            anchors.leftMargin: button.narrow ? Tokens.space.s : 10
            anchors.right: parent.right
            anchors.rightMargin: button.narrow ? Tokens.space.xs : Tokens.space.s
            anchors.verticalCenter: parent.verticalCenter
            StyledText {
                id: titleText
                width: parent.width
                text: button.title
                role: Tokens.type.caption
                strong: true
                wrapMode: Text.NoWrap
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: Tokens.type.minimum
                Accessible.ignored: true
                color: button.selected ? Tokens.palette.overAccent : Tokens.palette.text
                opacity: button.selected ? 1 : 0.8
            }
            StyledText {
                id: captionText
                width: parent.width
                text: button.caption
                role: Tokens.type.label
                font.weight: 400
                wrapMode: Text.NoWrap
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: Tokens.type.minimum
                Accessible.ignored: true
                color: Tokens.palette.textSecondary
            }
        }
    }

    // The tip lies over what stands below the button.
    z: tip.visible ? 1 : 0
    Tip {
        id: tip
        text: button.title
        shown: button.slim && button.hovered && !button.down
    }
}
