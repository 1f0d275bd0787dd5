import QtQuick
import QtQuick.Templates as T
import Lamina

// A value on a line: what is set is thick, the rest thin.
T.Slider {
    id: slider

    required property string name

    implicitWidth: 200
    implicitHeight: Tokens.touch.minimum
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.name: name

    readonly property real thumb: Tokens.touch.sliderThumb
    readonly property real line: width - thumb

    background: Item {
        Rectangle {
            x: slider.thumb / 2
            anchors.verticalCenter: parent.verticalCenter
            width: slider.line
            height: 2
            radius: 1
            color: Tokens.palette.sliderMaximumTrack
            opacity: 0.3
        }
        Rectangle {
            x: slider.thumb / 2
            anchors.verticalCenter: parent.verticalCenter
            width: slider.line * slider.visualPosition
            height: 4
            radius: 2
            color: Tokens.palette.sliderMinimumTrack
        }
    }
    handle: Rectangle {
        x: slider.line * slider.visualPosition
        anchors.verticalCenter: parent.verticalCenter
        width: slider.thumb
        height: slider.thumb
        radius: width / 2
        color: slider.pressed ? Tokens.palette.accentPressed : slider.hovered ? Tokens.palette.accentHover : Tokens.palette.sliderThumb
        border.width: 2
        border.color: Tokens.palette.sliderThumbRing
        FocusRing {
            radius: parent.radius
            shown: slider.visualFocus
        }
    }
}
