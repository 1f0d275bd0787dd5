import QtQuick
import Lamina

// A UIDocumentPickerViewController: the desktop's dialog stands in a window of its own; here is what it needs of ours.
AppScreen {
    id: picker

    readonly property bool asksHere: Host.folderPicker === controller

    name: controller.asksForMovie ? qsTranslate("Lamina", "Choose a movie") : qsTranslate("Lamina", "Choose a place")
    onBack: controller.cancel()

    // A tap on the dimmed work gives the dialog up, should it have got lost behind other windows.
    Scrim {
        busy: !picker.asksHere
        onTapped: picker.controller.cancel()
    }

    Loader {
        anchors.fill: parent
        active: picker.asksHere
        focus: active
        sourceComponent: FolderSheet {
            card: picker.sheetsAreCards
            placing: !picker.controller.asksForMovie
            onChosen: path => Host.placeIn(path)
            subtitle: picker.controller.suggestedName
            placingText: picker.controller.asksForFolder ? qsTranslate("Lamina", "Choose this folder")
                                                         : qsTranslate("Lamina", "Save here")
            onPlaced: folder => Host.placeIn(folder)
            onClosed: picker.controller.cancel()
        }
    }
}
