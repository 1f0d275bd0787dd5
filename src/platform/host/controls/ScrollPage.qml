import QtQuick
import QtQuick.Templates as T
import Lamina

// A page that is only scrolled where it doesn't fit, and brings what has the keyboard into sight. One that is only read
// takes the keyboard itself and is scrolled by keys.
Flickable {
    id: page

    // Kept free over and under what is brought into sight: room for its focus ring.
    property real slack: Tokens.space.l
    property bool reading: false
    // Where in it one is is shown.
    property bool marked: reading
    readonly property var focused: Window.activeFocusItem
    readonly property bool shows: Host.focusVisible

    contentWidth: width
    boundsBehavior: Flickable.StopAtBounds
    interactive: contentHeight > height
    activeFocusOnTab: reading && interactive
    onFocusedChanged: reveal()
    onShowsChanged: reveal()
    onHeightChanged: reveal()

    function holds(item) {
        while (item && item !== contentItem)
            item = item.parent
        return item === contentItem
    }

    function reveal() {
        // A control that got the focus without the keyboard is where the user looks, or no concern of theirs.
        if (!focused || focused === page || !shows || !holds(focused))
            return
        const top = focused.mapToItem(contentItem, 0, 0).y - slack
        const bottom = top + focused.height + 2 * slack
        const wanted = Math.min(top, Math.max(contentY, bottom - height))
        contentY = Math.max(0, Math.min(wanted, contentHeight - height))
    }

    function scrollBy(points) {
        contentY = Math.max(0, Math.min(contentY + points, contentHeight - height))
    }

    Keys.onPressed: event => {
        const pressed = command => KeyTable.find(command, event.key, event.modifiers)
        const steps = { row: 40, page: height - 40, ends: contentHeight }
        const command = Object.keys(steps).find(name => pressed(name) === 0 || pressed(name) === 1)
        event.accepted = reading && interactive && command !== undefined
        if (event.accepted)
            scrollBy(pressed(command) === 0 ? -steps[command] : steps[command])
    }

    FocusRing {
        parent: page
        inside: true
        control: page
    }
    T.ScrollBar.vertical: ThinScrollBar {
        visible: page.marked && size < 1
    }
}
