import QtQuick
import Lamina

// A UIDocumentPickerViewController: the desktop's dialog stands in a window of its own; here is what it needs of ours.
AppScreen {
    id: picker

    name: qsTranslate("Lamina", "Choose a place")
    onBack: controller.cancel()

    // A tap on the dimmed work gives the dialog up, should it have got lost behind other windows.
    Scrim {
        busy: true
        onTapped: picker.controller.cancel()
    }
}
