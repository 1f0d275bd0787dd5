import QtQuick
import QtQuick.Templates as T
import Lamina

// The contact sheet: the camera and the photos of an album in square tiles. It lies under the bar, which makes way
// while it is scrolled, by fingers, wheel or keys alike.
TileGrid {
    id: grid

    // A YMSPhotoPickerViewController.
    required property var controller
    // Of the screen, whose edges are the sheet's.
    required property real room
    required property real screenHeight
    // Height that the bar takes over the first row, and how much of it is there now.
    required property real barHeight
    required property real barShown

    readonly property real gap: Tokens.thumbs.pickerGap
    readonly property real inset: room > 640 ? Tokens.space.s : 0
    // What is left of a row's width is shared out: tiles stand on whole pixels and differ by one at most.
    readonly property real pitch: (room - 2 * inset + gap) / columns
    // All of it; the view's own height of its content comes late.
    readonly property real sheetHeight: topMargin + Math.ceil(count / columns) * cellHeight + bottomMargin
    readonly property real displayScale: Screen.devicePixelRatio
    property bool complete: false
    property bool placed: false
    property real formerMargin: 0
    // What was looked at when the photos were exchanged for others, and how far below the window's top.
    property var kept: null
    property string album: ""

    // How far it is scrolled; 0: at its top.
    function scrolled() {
        return contentY - originY + topMargin
    }
    function tileX(column) {
        return Math.round(column * pitch)
    }
    function scrollTo(y) {
        const most = sheetHeight - height
        contentY = Math.max(0, Math.min(y, most)) + originY - topMargin
    }
    // Not under the bar, which comes down again on the way up.
    function reveal(item) {
        const before = scrolled()
        const top = topMargin + Math.floor(item / columns) * cellHeight
        cancelFlick()
        if (top - gap < before + barShown)
            scrollTo(item < columns ? 0 : top - gap - barHeight)
        else if (top + cellHeight > before + height)
            scrollTo(top + cellHeight - height)
        if (scrolled() !== before)
            controller.scrollViewDidComeToRest()
    }
    // The rows that were in sight stay there when the window gets another width.
    function place() {
        if (!complete || room <= 0 || screenHeight <= 0)
            return
        const first = placed ? Math.floor(scrolled() / cellHeight) * columns : 0
        controller.placeGrid(room, screenHeight, gap, inset, inset, displayScale)
        if (first > 0) {
            forceLayout()
            scrollTo(Math.floor(first / columns) * cellHeight)
        }
        placed = true
        controller.scrollViewDidComeToRest()
        settle()
    }
    // Where nothing can be scrolled any more the bar can't be fetched back by scrolling.
    function settle() {
        if (!placed || sheetHeight > height)
            return
        scrollTo(0)
        controller.scrollViewDidScroll(0, height, sheetHeight)
        controller.scrollViewDidComeToRest()
    }
    function inSight(item) {
        const top = topMargin + Math.floor(item / columns) * cellHeight - scrolled()
        return top + cellHeight > barShown && top < height
    }
    function keepPlace() {
        const first = Math.max(0, Math.ceil((scrolled() - topMargin) / cellHeight)) * columns
        const item = itemAtIndex(inSight(currentIndex) ? currentIndex : first)
        kept = item ? { photo: item.identifier, current: currentItem ? currentItem.identifier : "",
                        y: item.y - contentY, scrolled: scrolled() > 0 } : null
    }
    // Another album begins at its top; the same one stays where it was, as far as its photos are still there.
    function takePlace() {
        forceLayout()
        const former = kept
        kept = null
        const again = album === controller.albumIdentifier && former !== null
        album = controller.albumIdentifier
        const anchor = again ? controller.itemOfPhoto(former.photo) : -1
        currentIndex = again ? Math.max(0, controller.itemOfPhoto(former.current)) : 0
        if (anchor > 0 && former.scrolled)
            scrollTo(topMargin + Math.floor(anchor / columns) * cellHeight - former.y)
        else if (!again)
            scrollTo(0)
        controller.scrollViewDidComeToRest()
    }
    // Done with several photos; of one, it is the one that has the keyboard.
    function use() {
        if (controller.multiple)
            controller.finishPickingPhotos()
        else
            controller.tapItem(currentIndex)
    }

    name: qsTranslate("Lamina", "Photos")
    x: inset
    // The last tile's gap and a little: so the columns are as many as they are said to be, and not one less.
    width: room - inset + gap + 1
    topMargin: barHeight + Math.max(inset, gap)
    bottomMargin: inset
    columns: Math.max(1, controller.columns)
    cellWidth: pitch
    cellHeight: controller.cellSide + gap
    pageRows: Math.max(1, Math.floor((height - barShown) / cellHeight) - 1)
    model: controller.photos
    cacheBuffer: Math.round(cellHeight)
    highlightFollowsCurrentItem: false
    // A bar that is higher for a longer title moves nothing under it.
    onTopMarginChanged: {
        const before = contentY - originY + formerMargin
        formerMargin = topMargin
        scrollTo(before)
    }
    onRoomChanged: place()
    onDisplayScaleChanged: place()
    onScreenHeightChanged: place()
    onHeightChanged: settle()
    onSheetHeightChanged: Qt.callLater(settle)
    Component.onCompleted: {
        album = controller.albumIdentifier
        complete = true
        place()
    }

    onContentYChanged: if (placed) controller.scrollViewDidScroll(scrolled(), height, sheetHeight)
    onDragEnded: controller.scrollViewDidEndDragging(flicking)
    onMovementEnded: controller.scrollViewDidComeToRest()

    Connections {
        target: grid.controller.photos
        function onModelAboutToBeReset() {
            if (grid.kept === null)
                grid.keepPlace()
        }
        function onModelReset() {
            Qt.callLater(grid.takePlace)
        }
    }

    Keys.onPressed: event => {
        if (event.accepted)
            return
        const acts = { use: use, albums: () => controller.presentAlbumPickerView() }
        const command = Object.keys(acts).find(name => KeyTable.find(name, event.key, event.modifiers) >= 0)
        event.accepted = command !== undefined
        if (event.accepted && !event.isAutoRepeat)
            acts[command]()
    }

    delegate: PickerTile {
        readonly property int column: index % grid.columns
        controller: grid.controller
        width: grid.cellWidth
        height: grid.cellHeight - grid.gap
        focus: GridView.isCurrentItem
        leftPadding: grid.tileX(column) - column * grid.pitch
        side: grid.tileX(column + 1) - grid.tileX(column) - grid.gap
    }
    // Whose photos pass by while the list is pulled along.
    HintPill {
        parent: grid.parent
        anchors.right: parent.right
        anchors.rightMargin: Tokens.space.xxl
        y: bar.y + Math.max(0, Math.min(bar.visualPosition * bar.height, bar.height - height))
        room: grid.room / 2
        shown: bar.pressed
        text: opacity > 0 || shown ? grid.controller.dayOfItem(Math.max(1, Math.floor((grid.scrolled() - grid.topMargin + grid.barShown) / grid.cellHeight) * grid.columns)) : ""
    }
    T.ScrollBar.vertical: ThinScrollBar {
        id: bar
        parent: grid.parent
        x: grid.room - width
        y: grid.barShown
        height: grid.height - y
        onPaper: true
        onPressedChanged: if (!pressed) grid.controller.scrollViewDidComeToRest()
    }
}
