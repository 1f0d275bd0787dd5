import QtQuick
import Lamina

// Under a live picture: pause; of a movie the time, a track to go elsewhere by, and the length.
Item {
    id: transport

    // A LiveViewController.
    required property var controller

    readonly property bool movie: controller.source === "movie"
    readonly property bool tracked: movie && controller.duration > 0
    readonly property real step: 5

    implicitHeight: Tokens.bars.selector

    function clock(seconds) {
        const whole = Math.max(0, Math.floor(seconds))
        const rest = whole % 60
        return Math.floor(whole / 60) + ":" + (rest < 10 ? "0" : "") + rest
    }

    IconButton {
        id: pause
        width: Tokens.bars.selector
        height: width
        iconName: transport.controller.paused ? "play" : "pause"
        name: transport.controller.paused ? qsTranslate("Lamina", "Play") : qsTranslate("Lamina", "Pause")
        command: "pausePicture"
        enabled: !transport.controller.stopped
        lit: true
        onClicked: transport.controller.togglePaused()
    }
    StyledText {
        id: now
        visible: transport.tracked
        anchors.left: pause.right
        anchors.leftMargin: Tokens.space.l
        anchors.verticalCenter: parent.verticalCenter
        text: transport.clock(track.pressed ? track.value : transport.controller.position)
        role: Tokens.type.caption
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
    ValueSlider {
        id: track
        visible: transport.tracked
        anchors.left: now.right
        anchors.leftMargin: Tokens.space.xs
        anchors.right: length.left
        anchors.rightMargin: Tokens.space.s
        anchors.verticalCenter: parent.verticalCenter
        name: qsTranslate("Lamina", "Place in the movie")
        words: transport.clock(value)
        from: 0
        to: Math.max(0.1, transport.controller.duration)
        stepSize: transport.step
        snapMode: ValueSlider.NoSnap
        // The movie goes there once the finger is lifted.
        onPressedChanged: if (!pressed) transport.controller.seek(value)
        onSought: wanted => transport.controller.seek(wanted)
        Binding {
            target: track
            property: "value"
            value: transport.controller.position
            when: !track.pressed
            restoreMode: Binding.RestoreNone
        }
    }
    StyledText {
        id: length
        visible: transport.tracked
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: transport.clock(transport.controller.duration)
        role: Tokens.type.caption
        color: Tokens.palette.textSecondary
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
}
