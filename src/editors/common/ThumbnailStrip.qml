import QtQuick
import Lamina

// Thumbnails in a row that scrolls sideways, by finger, wheel and keys. One stop for the keyboard, with arrows inside.
ListView {
    id: strip

    required property string name
    // Where the first one stands before it is scrolled.
    property real lead: Tokens.space.m
    property real side: style.side
    property ThumbnailStyle style: ThumbnailStyle {}
    // Row of the one in force; -1: none.
    property int marked: -1
    signal chosen(int tag)

    readonly property int pageSteps: Math.max(1, Math.floor(width / (side + spacing)) - 1)

    function goTo(row) {
        currentIndex = Math.max(0, Math.min(row, count - 1))
        if (currentIndex === 0)
            positionViewAtBeginning()
        else
            positionViewAtIndex(currentIndex, ListView.Contain)
    }

    orientation: ListView.Horizontal
    spacing: style.gap
    clip: true
    reuseItems: true
    boundsBehavior: Flickable.StopAtBounds
    focus: true
    activeFocusOnTab: true
    keyNavigationEnabled: false
    highlightMoveDuration: 0
    Accessible.role: Accessible.List
    Accessible.name: name
    header: Item { width: strip.lead }
    footer: Item { width: Tokens.space.m }
    // What came in force by other ways is brought into sight.
    onMarkedChanged: if (marked >= 0) goTo(marked)
    onCountChanged: if (currentIndex < 0) currentIndex = 0
    Component.onCompleted: {
        if (marked < 1)
            return
        currentIndex = marked
        positionViewAtIndex(marked, ListView.Center)
    }

    Keys.onPressed: event => {
        const places = { row: [-1, 1, -1, 1], page: [-pageSteps, pageSteps], ends: [-count, count] }
        for (const command in places) {
            const by = places[command][KeyTable.find(command, event.key, event.modifiers)]
            event.accepted = by !== undefined
            if (event.accepted)
                return goTo(currentIndex + by)
        }
    }
    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => strip.contentX = Math.max(strip.originX, Math.min(strip.contentX - event.angleDelta.y,
            strip.originX + strip.contentWidth - strip.width))
    }

    delegate: ThumbnailButton {
        y: (strip.height - height) / 2
        width: strip.side
        height: strip.side + strip.style.captionHeight
        style: strip.style
        marked: index === strip.marked
        focus: ListView.isCurrentItem
        onClicked: {
            strip.currentIndex = index
            strip.chosen(tag)
        }
    }
}
