import QtQuick
import QtQuick.Templates as T
import Lamina

// A value on a line: what is set is thick, the rest thin, with a tick at zero where the range has both signs.
T.Slider {
    id: slider

    required property string name
    // The value in words, where its number alone would mislead.
    property string words

    readonly property real thumb: Tokens.touch.sliderThumb
    readonly property real line: width - thumb

    implicitWidth: 200
    implicitHeight: Tokens.touch.minimum
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.name: name
    Accessible.description: Theme.spoken(words, enabled)
    Accessible.onIncreaseAction: step(increase)
    Accessible.onDecreaseAction: step(decrease)

    function step(change) {
        change()
        moved()
    }

    // The range by the names under which assistive technologies are told of it.
    readonly property real minimumValue: from
    readonly property real maximumValue: to

    background: Item {
        Rectangle {
            x: slider.thumb / 2
            anchors.verticalCenter: parent.verticalCenter
            width: slider.line
            height: 2
            radius: 1
            color: Tokens.palette.sliderMaximumTrack
        }
        Rectangle {
            visible: slider.from < 0 && slider.to > 0
            x: Math.round(slider.thumb / 2 + slider.line * -slider.from / (slider.to - slider.from))
            anchors.verticalCenter: parent.verticalCenter
            width: 1
            height: 12
            color: Tokens.palette.sliderZeroTick
        }
        // What lies under the filled part would shine through it.
        Rectangle {
            x: slider.thumb / 2
            anchors.verticalCenter: parent.verticalCenter
            width: slider.line * slider.visualPosition
            height: 4
            radius: 2
            color: Tokens.palette.ground
            Rectangle {
                anchors.fill: parent
                radius: parent.radius
                color: Tokens.palette.sliderMinimumTrack
            }
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
            control: slider
        }
    }
}
