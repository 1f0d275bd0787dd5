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

    implicitHeight: Math.max(Tokens.bars.selector, texts.implicitHeight + Tokens.space.m)
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
            id: texts
            anchors.left: thumb.right
            anchors.leftMargin: 10
            anchors.right: parent.right
            anchors.rightMargin: Tokens.space.s
            anchors.verticalCenter: parent.verticalCenter
            StyledText {
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
}
