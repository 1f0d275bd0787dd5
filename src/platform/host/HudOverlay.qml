import QtQuick
import Lamina

// The panel of work under way, over all screens. Nothing of it exists while there is none.
Loader {
    id: overlay

    readonly property QtObject work: Host.progress

    active: work.present

    Binding {
        target: overlay.work
        property: "textScale"
        value: Theme.textScale
    }

    sourceComponent: ScreenItem {
        id: layer

        readonly property bool blocking: overlay.work.blocking

        function takeKeys() {
            if (blocking)
                Host.giveFocusTo(layer)
        }

        modal: true
        covered: overlay.work.text === ""
        name: overlay.work.text
        Accessible.role: Accessible.Pane
        onBlockingChanged: takeKeys()
        onWidthChanged: overlay.work.takeSize(width, height)
        onHeightChanged: overlay.work.takeSize(width, height)
        Component.onCompleted: {
            overlay.work.takeSize(width, height)
            takeKeys()
        }
        Keys.onPressed: event => {
            const leaves = KeyTable.find("back", event.key, event.modifiers) >= 0
            const answers = overlay.work.text !== "" && KeyTable.find("use", event.key, event.modifiers) >= 0
            event.accepted = layer.blocking
            if ((leaves || answers) && !event.isAutoRepeat)
                overlay.work.giveUp() // after which there may be no panel
        }

        // Nothing goes through while the panel stands.
        MouseArea {
            anchors.fill: parent
            visible: layer.blocking
            hoverEnabled: true
            cursorShape: overlay.work.asks ? Qt.ArrowCursor : Qt.WaitCursor
            onWheel: wheel => wheel.accepted = true
        }
        Item {
            anchors.fill: parent
            visible: overlay.work.text !== ""
            Accessible.role: Accessible.AlertMessage
            Accessible.name: overlay.work.text
        }
        ViewCanvas {
            id: canvas
            objectName: "progress"
            anchors.fill: parent
            controller: overlay.work
            acceptsInput: layer.blocking
            CanvasControls {
                canvas: canvas
                // The last button is the safe one.
                onItemAdded: (index, item) => {
                    if (layer.blocking && item.operable)
                        item.forceActiveFocus(Qt.TabFocusReason)
                }
            }
        }
    }
}
