import QtQuick
import Lamina

// The two photos of a blend: which is selected, and where it lies. In move mode the one that moves is marked.
Grid {
    id: selector

    // A BlendPhotoViewController.
    required property var controller
    // Room for the pictures alone.
    property bool slim: false
    property bool stacked: false
    readonly property real buttonWidth: slim ? Tokens.bars.selector : stacked ? width : (width - spacing) / 2

    function caption(photo) {
        if (controller.movingPhoto > 0)
            return photo !== controller.movingPhoto ? qsTranslate("Lamina", "Stays in place") : qsTranslate("Lamina", "On top, moves")
        return (photo === 2) === controller.photo2OnTop ? qsTranslate("Lamina", "On top") : qsTranslate("Lamina", "Below")
    }

    columns: stacked ? 1 : 2
    spacing: Tokens.space.s
    leftPadding: slim ? Math.round((width - buttonWidth) / 2) : 0

    Repeater {
        model: [
            { title: qsTranslate("Lamina", "Photo 1"), photo: 1 },
            { title: qsTranslate("Lamina", "Photo 2"), photo: 2 }
        ]
        delegate: PhotoButton {
            required property var modelData
            readonly property int photo: modelData.photo
            readonly property bool first: photo === 1
            width: selector.buttonWidth
            slim: selector.slim
            title: modelData.title
            caption: selector.caption(photo)
            picture: first ? selector.controller.photo1Picture : selector.controller.photo2Picture
            selected: selector.controller.movingPhoto > 0 ? selector.controller.movingPhoto === photo
                : first ? selector.controller.photo1Selected : selector.controller.photo2Selected
            dimmed: selector.controller.movingPhoto > 0 && selector.controller.movingPhoto !== photo
            onClicked: first ? selector.controller.photo1() : selector.controller.photo2()
        }
    }
}
