import QtQuick
import Lamina

// A page that is only scrolled where it doesn't fit, and brings what has the keyboard into sight.
Flickable {
    id: page

    // Kept free over and under what is brought into sight: room for its focus ring.
    property real slack: Tokens.space.l
    // An item; only controls know whether the keyboard led there.
    readonly property var focused: Window.activeFocusItem

    contentWidth: width
    boundsBehavior: Flickable.StopAtBounds
    interactive: contentHeight > height
    onFocusedChanged: reveal()
    onHeightChanged: reveal()

    function holds(item) {
        while (item && item !== contentItem)
            item = item.parent
        return item === contentItem
    }

    function reveal() {
        // A control that got the focus without the keyboard is where the user looks, or no concern of theirs.
        if (!focused || !holds(focused) || focused.visualFocus === false)
            return
        const top = focused.mapToItem(contentItem, 0, 0).y - slack
        const bottom = top + focused.height + 2 * slack
        const wanted = Math.min(top, Math.max(contentY, bottom - height))
        contentY = Math.max(0, Math.min(wanted, contentHeight - height))
    }
}
