import QtQuick
import Lamina

// A SheetViewController: a sheet over the screen that presents it. Its rows stand one below the other and are scrolled
// where they don't fit; what is at its foot stays.
AppScreen {
    id: screen

    default property alias content: rows.data
    property alias spacing: rows.spacing
    property alias foot: panel.foot
    property alias footHeight: panel.footHeight

    sheet: true
    onBack: controller.backAction()

    Scrim {
        shown: panel.up && screen.controller.dimmed
        onTapped: screen.controller.handleTopTapWithSender()
    }

    SheetPanel {
        id: panel
        card: screen.sheetsAreCards
        shown: screen.shown
        title: screen.name
        contentHeight: rows.height
        leastHeight: screen.controller.sheetHeight
        cornerRadius: screen.controller.cornerRadius
        scrolls: page.interactive
        pullable: screen.controller.pullable
        puller: screen.controller
        onClosed: screen.controller.backAction()

        ScrollPage {
            id: page
            anchors.fill: parent
            contentHeight: rows.height
            clip: interactive
            slack: Tokens.focus.gap + Tokens.focus.ring
            onContentHeightChanged: Qt.callLater(reveal)
            Column {
                id: rows
                width: page.width
            }
        }
        // Where rows go on below the edge, or above it.
        Repeater {
            model: [page.atYBeginning, page.atYEnd]
            delegate: Rectangle {
                required property bool modelData
                required property int index
                visible: page.interactive && !modelData
                y: index === 0 ? 0 : page.height - height
                width: parent.width
                height: 1
                color: Tokens.palette.hairline
            }
        }
    }
}
