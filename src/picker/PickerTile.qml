import QtQuick
import QtQuick.Templates as T
import Lamina

// One tile of the contact sheet: a photo, or the camera. The grid is one stop for the keyboard, and leads it here. What
// it shows is a cell of the controller's, held for as long as the tile stands for that item.
T.ItemDelegate {
    id: tile

    required property int index
    required property string identifier
    required property bool isCamera
    property var controller
    // How wide it is, to whole pixels: what is left of the row is shared out.
    property real side: height

    property QtObject cell: null
    // Marks fade where the user has set them, not where the tile gets another photo.
    property bool settled: false
    readonly property bool chosen: cell !== null && cell.selected

    // Where the mark of a change of value would come from while there is no cell.
    readonly property QtObject rest: QtObject {
        readonly property int delay: 0
        readonly property int duration: 0
        readonly property var easing: Easing.Linear
    }

    function take() {
        release()
        cell = controller.cellForItem(index)
        settled = true
    }
    function release() {
        settled = false
        pressing.stop()
        const former = cell
        cell = null
        if (former)
            controller.endDisplaying(former)
    }

    // Not every version of the grid tells of a tile that is used again: it is seen by what it stands for.
    property bool made: false
    function settle() {
        if (made && index >= 0 && (cell === null || cell.item() !== index))
            take()
    }
    Component.onCompleted: {
        made = true
        take()
    }
    Component.onDestruction: {
        made = false
        release()
    }
    onIdentifierChanged: if (made) take()
    onIndexChanged: if (index < 0) release(); else Qt.callLater(settle)
    GridView.onPooled: release()
    GridView.onReused: settle()

    hoverEnabled: true
    focusPolicy: Qt.ClickFocus
    Accessible.name: {
        chosen, controller.selectedCount // asked again when they change
        return controller.itemDescription(index)
    }
    Accessible.selectable: true
    Accessible.selected: chosen
    Accessible.onPressAction: clicked()

    // A finger that goes on to scroll presses nothing; a short tap is seen all the same.
    Timer {
        id: pressing
        property bool seen: false
        interval: 60
        onTriggered: {
            seen = true
            tile.controller.highlightItem(tile.index)
        }
    }
    onPressed: {
        pressing.seen = false
        pressing.restart()
    }
    onCanceled: letGo(false)
    onReleased: letGo(true)
    function letGo(shortly) {
        if (pressing.running && shortly)
            controller.highlightItem(index)
        if (pressing.seen || (pressing.running && shortly))
            controller.unhighlightItem(index)
        pressing.stop()
    }
    onClicked: {
        GridView.view.currentIndex = index
        controller.tapItem(index)
    }
    onPressAndHold: look()
    function look() {
        GridView.view.currentIndex = index
        if (isCamera)
            controller.tapItem(index)
        else
            controller.presentSinglePhoto(index)
    }
    Keys.onPressed: event => {
        const acts = { preview: look, photoMenu: look, mark: clicked }
        const command = Object.keys(acts).find(name => KeyTable.find(name, event.key, event.modifiers) >= 0)
        event.accepted = command !== undefined
        if (event.accepted && !event.isAutoRepeat)
            acts[command]()
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.RightButton
        onPressed: tile.look()
    }

    contentItem: Item {
        Item {
            width: tile.side
            height: parent.height
            scale: tile.cell && tile.cell.pressScale !== undefined ? tile.cell.pressScale : 1
            MotionBehavior on scale {
                motion: tile.cell && tile.cell.pressMotion ? tile.cell.pressMotion : tile.rest
                enabled: tile.settled && motion.delay + motion.duration > 0
            }

            Loader {
                anchors.fill: parent
                sourceComponent: tile.isCamera ? camera : photo
            }
            Rectangle {
                anchors.fill: parent
                visible: tile.hovered && Host.mouseAtHand
                color: Tokens.palette.hairline
            }
            Item {
                anchors.fill: parent
                anchors.margins: tile.chosen && !tile.isCamera ? Tokens.space.xs : 0
                FocusRing {
                    inside: true
                    control: tile
                }
            }
        }
    }

    Component {
        id: camera
        CameraTile {
            theme: tile.controller.theme
            cell: tile.cell
        }
    }
    Component {
        id: photo
        PhotoTile {
            theme: tile.controller.theme
            cell: tile.cell
            motion: tile.cell && tile.cell.veilMotion ? tile.cell.veilMotion : tile.rest
            settled: tile.settled
        }
    }
}
