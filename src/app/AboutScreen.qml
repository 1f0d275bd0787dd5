import QtQuick
import Lamina

// A card over the work with two pages: all keys by what they are for, and what this application is.
AppScreen {
    id: about

    // AboutViewController.Page
    readonly property bool showsKeys: controller.page === 0

    sheet: true
    name: controller.title
    onBack: controller.close()

    Scrim {
        shown: panel.up
        onTapped: about.controller.close()
    }

    SheetPanel {
        id: panel
        shown: about.shown
        card: about.sheetsAreCards
        iconName: "app-scalable"
        title: "Lamina"
        subtitle: qsTranslate("Lamina", "Version %1").arg(about.controller.version)
        contentHeight: page.contentHeight + foot.height + Tokens.space.l
        onClosed: about.controller.close()

        ScrollPage {
            id: page
            anchors.fill: parent
            anchors.bottomMargin: foot.height + Tokens.space.l
            contentHeight: about.showsKeys ? keys.height : words.height
            onContentHeightChanged: contentY = 0
            reading: true
            focus: interactive
            clip: true
            Accessible.role: Accessible.Pane
            Accessible.name: about.showsKeys ? qsTranslate("Lamina", "Keys") : qsTranslate("Lamina", "About Lamina")

            KeyList {
                id: keys
                visible: about.showsKeys
                x: Tokens.space.sheetMargin
                width: page.width - 2 * x
            }
            Column {
                id: words
                visible: !about.showsKeys
                x: Tokens.space.sheetMargin
                width: page.width - 2 * x
                spacing: Tokens.space.m
                StyledText {
                    width: parent.width
                    text: qsTranslate("Lamina", "Lamina puts photos together: it lays one over another, or several into a collage. Your photos stay on this device.")
                    Accessible.name: text
                }
                StyledText {
                    width: parent.width
                    text: about.controller.licence
                    role: Tokens.type.caption
                    color: Tokens.palette.textSecondary
                    Accessible.name: text
                }
            }
        }
        Row {
            id: foot

            readonly property int count: report.visible ? 2 : 1

            x: Tokens.space.sheetMargin
            y: parent.height - height
            width: parent.width - 2 * x
            spacing: Tokens.space.m

            LaminaButton {
                width: (foot.width - (foot.count - 1) * foot.spacing) / foot.count
                kind: "quiet"
                text: about.showsKeys ? qsTranslate("Lamina", "About and licence") : qsTranslate("Lamina", "Keys")
                onClicked: about.controller.page = about.showsKeys ? 1 : 0
            }
            LaminaButton {
                id: report
                visible: about.controller.takesReports
                width: (foot.width - foot.spacing) / 2
                kind: "quiet"
                text: qsTranslate("Lamina", "Report a fault")
                onClicked: about.controller.report()
            }
        }
    }
}
