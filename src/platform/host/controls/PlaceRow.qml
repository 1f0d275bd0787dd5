import QtQuick
import Lamina

// Folders that are always at hand, one of which may be the one that is shown.
Flickable {
    id: row

    // Of {name, path}.
    required property var places
    required property string current
    signal chosen(string path)

    implicitHeight: buttons.height
    contentWidth: buttons.width + 2 * Tokens.space.sheetMargin
    interactive: contentWidth > width
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    Row {
        id: buttons
        x: Tokens.space.sheetMargin
        spacing: Tokens.space.s
        Repeater {
            model: row.places
            delegate: ChipButton {
                required property var modelData
                text: modelData.name
                selected: modelData.path === row.current
                onClicked: row.chosen(modelData.path)
                onActiveFocusChanged: {
                    if (activeFocus)
                        row.contentX = Math.max(0, Math.min(x, row.contentWidth - row.width))
                }
            }
        }
    }
}
