import QtQuick
import Lamina

// One screen in the window: how it comes, goes and makes way. It has no look of its own.
ScreenItem {
    id: frame

    required property QtObject controller
    required property url source
    required property int phase
    required property int motion
    required property bool front
    required property bool overlay

    // Whether the user deals with this screen: it is on top, and no panel of work lies over it.
    readonly property bool live: front && !Host.progress.blocking
    readonly property bool shown: phase === ScreenModel.Shown
    readonly property int away: motion === ScreenModel.Slide ? 24 : 0
    // A sheet comes and goes by itself; only what stands over it takes it out of sight.
    readonly property bool rises: motion === ScreenModel.Rise && phase !== ScreenModel.Covered && loader.item !== null && loader.item.sheet === true
    property real faded: shown ? 1 : 0

    // At once where it is shown, since what is not visible takes no focus.
    visible: shown || opacity > 0
    modal: overlay
    covered: !live
    Accessible.role: Accessible.Pane
    name: loader.item ? loader.item.name : ""
    opacity: rises ? 1 : faded
    x: shown ? 0 : phase === ScreenModel.Covered ? -away : away

    Behavior on faded {
        NumberAnimation { duration: Host.transitionDuration; easing.type: Easing.OutCubic }
    }
    Behavior on x {
        NumberAnimation { duration: Host.transitionDuration; easing.type: Easing.OutCubic }
    }

    onLiveChanged: if (live) Host.giveFocusTo(frame)
    Component.onCompleted: {
        loader.setSource(source, { "controller": controller })
        if (live)
            Host.giveFocusTo(frame)
    }

    Loader {
        id: loader
        anchors.fill: parent
        focus: true
    }
    Binding {
        target: loader.item
        property: "shown"
        value: frame.shown
        when: frame.rises
    }

    // Until a screen stands, and while it leaves, it is only seen. Hidden when it stands: one that is merely disabled
    // would go on to set the pointer.
    MouseArea {
        anchors.fill: parent
        visible: !frame.front
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }
}
