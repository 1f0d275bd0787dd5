import QtQuick
import Lamina

// Which colours a page for print has.
SheetScreen {
    id: profiles

    name: qsTranslate("Lamina", "Color profile")

    ChoiceRows {
        width: parent.width
        name: profiles.name
        model: profiles.controller.profileCollectiomnView
        delegate: ChoiceRow {
            required property string profileLbl
            required property bool doneImgView
            required property int index
            width: parent.width
            name: profileLbl
            marked: doneImgView
            focus: marked
            onClicked: profiles.controller.selectRow(index)
        }
    }
}
