import QtQuick
import Lamina

// Photos of the library as a contact sheet, white under the bar in the theme's colour.
AppScreen {
    id: picker

    // YMSPhotoPickerViewController.LibraryState
    readonly property bool bare: grid.count <= 1 // but for the camera
    readonly property bool loading: bare && controller.libraryState === 0
    readonly property bool empty: bare && controller.libraryState === 1
    readonly property bool hidden: bare && controller.libraryState === 3
    readonly property string chooseText: qsTranslate("Lamina", "Choose photos…")
    // Tab leads into a bar that has made way: it comes back for as long as it has the keyboard.
    readonly property bool barHeld: bar.holdsFocus && Host.focusVisible
    readonly property real barShown: bar.opacity > 0 ? bar.y + bar.height : 0

    name: qsTranslate("Lamina", "Choose photos")
    onBack: controller.cancelPicking()

    Rectangle {
        anchors.fill: parent
        color: Tokens.palette.paper
    }
    PickerBar {
        id: bar
        readonly property bool album: picker.controller.albumTitle !== ""
        // Where it has made way it keeps no touch from the photos, yet Tab still finds it.
        y: picker.barHeld ? 0 : picker.controller.barAlpha > 0 ? picker.controller.barOffset : -height
        width: parent.width
        opacity: picker.barHeld ? 1 : picker.controller.barAlpha
        MotionBehavior on y { motion: picker.controller.barOffsetMotion }
        MotionBehavior on opacity { motion: picker.controller.barAlphaMotion }
        theme: picker.controller.theme
        title: album ? picker.controller.albumTitle : qsTranslate("Lamina", "Photos")
        note: album ? picker.controller.selectionText : ""
        opens: album
        opensCommand: "albums"
        leftText: qsTranslate("Lamina", "Cancel")
        rightText: picker.controller.rightBarButtonItem ? picker.controller.rightBarButtonItem.title : ""
        rightEnabled: picker.controller.rightBarButtonItem !== null && picker.controller.rightBarButtonItem.enabled
        rightCommand: "use"
        onLeave: picker.controller.cancelPicking()
        onOpened: picker.controller.presentAlbumPickerView()
        onAct: picker.controller.rightBarButtonItem.press()
    }
    PhotoGrid {
        id: grid
        height: parent.height - foot.height
        room: parent.width
        screenHeight: parent.height
        controller: picker.controller
        barHeight: bar.height
        barShown: picker.barShown
        focus: true
    }

    BusyRing {
        anchors.centerIn: parent
        // What is there soon shows nothing before.
        visible: picker.loading && patience.over
        running: visible
    }
    Timer {
        id: patience
        property bool over: false
        interval: 150
        running: picker.loading
        onTriggered: over = true
    }
    PickerMessage {
        // Beside the camera's tile, or under it where there is more room.
        readonly property real tile: picker.controller.cellSide + grid.inset + grid.gap
        readonly property bool beside: picker.width - tile > picker.height - bar.height - tile
        readonly property real above: bar.height + (beside ? 0 : tile)

        visible: picker.empty || picker.hidden
        x: (beside ? tile : 0) + Tokens.space.l
        y: above + Math.max(Tokens.space.s, (picker.height - above - height) / 2)
        width: picker.width - x - Tokens.space.l
        theme: picker.controller.theme
        title: picker.empty ? qsTranslate("Lamina", "No photos yet") : ""
        line: picker.empty ? picker.controller.emptyLine
                           : qsTranslate("Lamina", "Your folders are not shown to Lamina here. The photos that you choose in your system’s own window are.")
        action: picker.hidden ? picker.chooseText : ""
        onActed: picker.controller.chooseFiles()
    }

    // Where the folders are not shown each further photo comes through the system's window too.
    Rectangle {
        id: foot
        anchors.bottom: parent.bottom
        width: parent.width
        height: visible ? choose.height + 2 * Tokens.space.s : 0
        visible: !picker.controller.showsFolders && !picker.hidden
        color: Tokens.palette.paper
        PickerButton {
            id: choose
            anchors.centerIn: parent
            theme: picker.controller.theme
            filled: true
            strong: true
            text: picker.chooseText
            tint: picker.controller.theme.orderLabelTextColor
            onClicked: picker.controller.chooseFiles()
        }
    }

    Toast {
        id: toast
        anchors.horizontalCenter: parent.horizontalCenter
        y: foot.y - height - Tokens.space.m
        good: false
        onDone: text = ""
    }
    Connections {
        target: picker.controller
        function onNotice(text) {
            toast.text = "" // one after the other of the same words is told twice
            toast.text = text
        }
    }
}
