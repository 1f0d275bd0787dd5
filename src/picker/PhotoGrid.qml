import QtQuick
import QtQuick.Templates as T
import Lamina

// The contact sheet: the camera and the photos of an album in square tiles. It lies under the bar, which makes way
// while it is scrolled, by fingers, wheel or keys alike.
GridView {
    id: grid

    // A YMSPhotoPickerViewController.
    required property var controller
    // Of the screen, whose edges are the sheet's.
    required property real room
    // Height that the bar takes over the first row, and how much of it is there now.
    required property real barHeight
    required property real barShown

    readonly property real gap: Tokens.thumbs.pickerGap
    readonly property real inset: room > 640 ? Tokens.space.s : 0
    readonly property int columns: Math.max(1, controller.columns)
    // What is left of a row's width is shared out: tiles stand on whole pixels and differ by one at most.
    readonly property real pitch: (room - 2 * inset + gap) / columns
    // How far it is scrolled; 0: at its top.
    readonly property real scrolled: contentY - originY + topMargin
    readonly property real pageRows: Math.max(1, Math.floor((height - barShown) / cellHeight) - 1)
    property bool placed: false

    function tileX(column) {
        return Math.round(column * pitch)
    }
    function clamped(y) {
        return Math.max(0, Math.min(y, contentHeight + topMargin + bottomMargin - height))
    }
    function scrollTo(y) {
        contentY = clamped(y) + originY - topMargin
    }
    // Another tile for those who come by keys: always whole in sight, and not under the bar.
    function goTo(item) {
        cancelFlick()
        currentIndex = Math.max(0, Math.min(item, count - 1))
        const top = topMargin + Math.floor(currentIndex / columns) * cellHeight
        const before = scrolled
        if (top - gap < scrolled + barShown)
            scrollTo(currentIndex < columns ? 0 : top - gap - barHeight)
        else if (top + cellHeight > scrolled + height)
            scrollTo(top + cellHeight - height)
        if (scrolled !== before)
            controller.scrollViewDidComeToRest()
    }
    // The rows that were in sight stay there when the window gets another width.
    function place() {
        if (room <= 0 || height <= 0)
            return
        const first = placed ? Math.floor(scrolled / cellHeight) * columns : 0
        controller.placeGrid(room, height, gap, inset, inset)
        if (placed && first > 0) {
            forceLayout()
            scrollTo(Math.floor(first / columns) * cellHeight)
        }
        placed = true
    }

    x: inset
    // The last tile's gap and a little: so the columns are as many as they are said to be, and not one less.
    width: room - inset + gap + 1
    topMargin: barHeight + inset
    bottomMargin: inset
    cellWidth: pitch
    cellHeight: controller.cellSide + gap
    model: controller.photos
    reuseItems: true
    cacheBuffer: Math.round(cellHeight * 2)
    boundsBehavior: Flickable.StopAtBounds
    focus: true
    activeFocusOnTab: true
    keyNavigationEnabled: false
    highlightMoveDuration: 0
    highlightFollowsCurrentItem: false
    Accessible.role: Accessible.List
    Accessible.name: controller.albumTitle
    onCountChanged: if (currentIndex < 0) currentIndex = 0
    onRoomChanged: place()
    onHeightChanged: place()
    Component.onCompleted: place()

    onContentYChanged: if (placed) controller.scrollViewDidScroll(scrolled, height, contentHeight + topMargin + bottomMargin)
    onDragEnded: controller.scrollViewDidEndDragging(flicking)
    onMovementEnded: controller.scrollViewDidComeToRest()

    Keys.onPressed: event => {
        const page = columns * pageRows
        const places = { row: [-columns, columns, -1, 1], page: [-page, page], ends: [-count, count] }
        for (const command in places) {
            const by = places[command][KeyTable.find(command, event.key, event.modifiers)]
            if (by === undefined)
                continue
            // Up and down stay in their column.
            const stays = command === "row" && Math.abs(by) === columns && (currentIndex + by < 0 || currentIndex + by >= count)
            event.accepted = true
            return goTo(currentIndex + (stays ? 0 : by))
        }
        const acts = { preview: look, mark: mark, photoMenu: look, use: use, albums: () => controller.presentAlbumPickerView() }
        for (const command in acts)
            if (KeyTable.find(command, event.key, event.modifiers) >= 0) {
                event.accepted = true
                if (!event.isAutoRepeat)
                    acts[command]()
                return
            }
    }
    function look() {
        if (currentIndex > 0)
            controller.presentSinglePhoto(currentIndex)
        else
            mark()
    }
    function mark() {
        goTo(currentIndex)
        controller.tapItem(currentIndex)
    }
    // Done with several photos; of one, it is the one that has the keyboard.
    function use() {
        if (!controller.rightBarButtonItem)
            mark()
        else if (controller.selectedCount > 0)
            controller.finishPickingPhotos()
    }

    delegate: PickerTile {
        id: tile
        readonly property int column: index % grid.columns
        controller: grid.controller
        width: grid.cellWidth
        height: grid.cellHeight - grid.gap
        focus: GridView.isCurrentItem
        leftPadding: grid.tileX(column) - column * grid.pitch
        side: grid.tileX(column + 1) - grid.tileX(column) - grid.gap
    }
    T.ScrollBar.vertical: ThinScrollBar {
        parent: grid.parent
        x: grid.room - width
        y: grid.barShown
        height: grid.height - y
        onPaper: true
        onPressedChanged: if (!pressed) grid.controller.scrollViewDidComeToRest()
    }
}
