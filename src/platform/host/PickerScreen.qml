import QtQuick
import Lamina

// A UIImagePickerController: the desktop's chooser stands in a window of its own; here is what it needs of ours.
AppScreen {
    id: picker

    // UIImagePickerController.state
    readonly property bool loading: controller.state === 1
    readonly property bool choosesHere: Host.folderPicker === controller

    name: qsTranslate("Lamina", "Choose a photo")
    onBack: controller.cancel()

    // A tap on the dimmed work gives the chooser up, should it have got lost behind other windows.
    Scrim {
        busy: !picker.choosesHere
        visible: picker.controller.state === 0
        onTapped: picker.controller.cancel()
    }

    Loader {
        anchors.fill: parent
        active: picker.choosesHere
        focus: active
        sourceComponent: FolderSheet {
            card: picker.sheetsAreCards
            onChosen: path => Host.choose(path)
            onClosed: picker.controller.cancel()
        }
    }

    BusyPanel {
        running: picker.loading
        text: qsTranslate("Lamina", "Opening %1").arg(picker.controller.photoName)
        cancelText: qsTranslate("Lamina", "Cancel")
        onCancelled: picker.controller.cancel()
    }
}
