import QtQuick
import QtQuick.Templates as T
import Lamina

// A value on a line: what is set is thick, the rest thin, with a tick at zero where the range has both signs. A drag
// sets the value and tells of it by `moved`; keys and a double tap ask for one by `sought`, which whoever holds it
// sets. Arrows go by `stepSize` (0: a hundredth of the range), Page up and down by a tenth of the range, Home and End
// to its ends.
T.Slider {
    id: slider

    required property string name
    // The value in words, where its number alone would mislead.
    property string words
    // The value that a double tap asks for; NaN: none.
    property real start: NaN
    signal sought(real value)
    // Up and down change it as well; else they are left to what it stands in.
    property bool climbs: false

    readonly property real thumb: Tokens.touch.sliderThumb
    readonly property real line: width - thumb

    implicitWidth: 200
    implicitHeight: Tokens.touch.minimum
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.name: name
    Accessible.description: Theme.spoken(words, enabled)
    Accessible.onIncreaseAction: seek(value + step)
    Accessible.onDecreaseAction: seek(value - step)

    readonly property real step: stepSize > 0 ? stepSize : (to - from) / 100

    function seek(wanted) {
        const nearest = Math.max(from, Math.min(wanted, to))
        if (nearest !== value)
            sought(nearest)
    }

    Keys.onPressed: event => {
        const page = (to - from) / 10
        const climb = climbs ? step : NaN
        const places = { row: [value + climb, value - climb, value - step, value + step],
                         page: [value + page, value - page],
                         ends: [from, to] }
        for (const command in places) {
            const wanted = places[command][KeyTable.find(command, event.key, event.modifiers)]
            event.accepted = wanted !== undefined && !isNaN(wanted)
            if (event.accepted)
                return seek(wanted)
        }
    }
    TapHandler {
        enabled: !isNaN(slider.start)
        // The second finger lifted sets a value too, after this.
        onDoubleTapped: Qt.callLater(slider.seek, slider.start)
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
