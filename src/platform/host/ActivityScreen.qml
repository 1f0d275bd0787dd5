import QtQuick
import Lamina

// A UIActivityViewController: what can be done with something that is shared, a row each.
AppScreen {
    id: activity

    sheet: true
    name: qsTranslate("Lamina", "Send or keep")
    onBack: controller.cancel()

    Scrim {
        shown: activity.shown
        onTapped: activity.controller.cancel()
    }
    SheetPanel {
        card: activity.sheetsAreCards
        // Its rows come all at once, when it is known what the machine can do.
        shown: activity.shown && activity.controller.ready
        title: activity.name
        contentHeight: rows.height
        scrolls: page.interactive
        onClosed: activity.controller.cancel()

        ScrollPage {
            id: page
            anchors.fill: parent
            contentHeight: rows.height
            clip: interactive
            slack: Tokens.focus.gap + Tokens.focus.ring
            focus: true

            ChoiceRows {
                id: rows
                width: page.width
                name: activity.name
                model: activity.controller.rows
                focus: true
                delegate: ChoiceRow {
                    required property string title
                    required property string line
                    required property int index
                    width: rows.width
                    required iconName
                    name: title
                    info: line
                    focus: index === 0
                    onClicked: activity.controller.choose(index)
                }
            }
        }
    }
}
