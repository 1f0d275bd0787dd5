import QtQuick
import Lamina

// The two photos of a blend side by side: which is selected, and where it lies.
Row {
    id: selector

    // A BlendPhotoViewController.
    required property var controller
    readonly property real buttonWidth: (width - spacing) / 2

    function caption(photo) {
        if (controller.panBool)
            return photo === 1 ? qsTranslate("Lamina", "Stays in place") : qsTranslate("Lamina", "On top, moves")
        return (photo === 2) === controller.photo2OnTop ? qsTranslate("Lamina", "On top") : qsTranslate("Lamina", "Below")
    }

    spacing: Tokens.space.s

    PhotoButton {
        width: selector.buttonWidth
        title: qsTranslate("Lamina", "Photo 1")
        caption: selector.caption(1)
        picture: selector.controller.photo1Picture
        selected: selector.controller.photo1Selected
        dimmed: selector.controller.panBool
        onClicked: selector.controller.photo1()
    }
    PhotoButton {
        width: selector.buttonWidth
        title: qsTranslate("Lamina", "Photo 2")
        caption: selector.caption(2)
        picture: selector.controller.photo2Picture
        selected: selector.controller.photo2Selected
        onClicked: selector.controller.photo2()
    }
}
