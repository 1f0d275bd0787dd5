import QtQuick
import Lamina

// The albums of the library as a list, white under the bar in the theme's colour.
AppScreen {
    id: albums

    // Tab leads into a bar that has made way: it comes back for as long as it has the keyboard.
    readonly property bool barHeld: bar.holdsFocus && Host.focusVisible
    readonly property real column: Math.min(width, Tokens.layout.columnMost)

    name: controller.title
    onBack: controller.cancel()

    Rectangle {
        anchors.fill: parent
        color: Tokens.palette.paper
    }
    RowList {
        id: list

        function tellScroll() {
            albums.controller.scrollViewDidScroll(contentY - originY + topMargin, height - topMargin, contentHeight)
        }
        // Where nothing can be scrolled any more the bar can't be fetched back by scrolling.
        function settle() {
            if (topMargin + contentHeight + bottomMargin <= height) {
                contentY = originY - topMargin
                tellScroll()
            }
            albums.controller.scrollViewDidComeToRest()
        }

        anchors.fill: parent
        topMargin: bar.height
        bottomMargin: albums.controller.bottomContentInset
        scrollBar: false
        name: albums.name
        model: albums.controller.rowCount
        rowForTyping: (text, current) => albums.controller.rowForTyping(text, current)
        header: Item {
            width: list.width
            height: albums.controller.headerViewHeight
        }
        footer: Item {
            width: list.width
            height: albums.controller.footerViewHeight
        }
        delegate: AlbumRow {
            width: list.width
            controller: albums.controller
            margin: (albums.width - albums.column) / 2
            focus: ListView.isCurrentItem
            onClicked: {
                list.currentIndex = index
                controller.selectRow(index)
            }
        }
        Component.onCompleted: goTo(albums.controller.selectedRow)
        onContentYChanged: tellScroll()
        onHeightChanged: Qt.callLater(settle)
        onDragEnded: albums.controller.scrollViewDidEndDragging()
        onMovementEnded: albums.controller.scrollViewDidComeToRest()
        onWentTo: albums.controller.scrollViewDidComeToRest()
    }
    PickerBar {
        id: bar
        y: albums.barHeld ? 0 : albums.controller.barOffset.value
        width: parent.width
        opacity: albums.barHeld ? 1 : albums.controller.barAlpha.value
        visible: opacity > 0 || albums.barHeld
        theme: albums.controller.theme
        title: albums.name
        leftText: qsTranslate("Lamina", "Cancel")
        onLeave: albums.controller.cancel()
        MotionBehavior on y { motion: albums.controller.barOffset }
        MotionBehavior on opacity { motion: albums.controller.barAlpha }
    }
}
