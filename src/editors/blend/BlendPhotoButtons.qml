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

    // With `room` for a few words, or for one.
    function caption(photo, room) {
        if (controller.movingPhoto > 0 && room)
            return photo !== controller.movingPhoto ? qsTranslate("Lamina", "Stays in place") : qsTranslate("Lamina", "On top, moves")
        return (photo === 2) === controller.photo2OnTop ? qsTranslate("Lamina", "On top") : qsTranslate("Lamina", "Below")
    }

    // To the button of the photo whose menu was open last.
    property int lastMenu: 1
    function takeFocus() {
        buttons.itemAt(lastMenu - 1).takeFocus()
    }

    columns: stacked ? 1 : 2
    spacing: Tokens.space.s
    leftPadding: slim ? Math.round((width - buttonWidth) / 2) : 0

    Repeater {
        id: buttons
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
            caption: selector.caption(photo, width >= (photo === selector.controller.movingPhoto ? 180 : 160))
            spokenCaption: selector.caption(photo, true)
            picture: first ? selector.controller.photo1Picture : selector.controller.photo2Picture
            selected: selector.controller.movingPhoto > 0 ? selector.controller.movingPhoto === photo
                : first ? selector.controller.photo1Selected : selector.controller.photo2Selected
            menuName: qsTranslate("Lamina", "Menu of photo %1").arg(photo)
            menuOpen: selector.controller.menuPhoto === photo
            onMenuOpenChanged: if (menuOpen) selector.lastMenu = photo
            onMenuAsked: menuOpen ? selector.controller.closePhotoMenu() : selector.controller.openPhotoMenu(photo)
            dimmed: selector.controller.movingPhoto > 0 && selector.controller.movingPhoto !== photo
            onClicked: first ? selector.controller.photo1() : selector.controller.photo2()
        }
    }
}
