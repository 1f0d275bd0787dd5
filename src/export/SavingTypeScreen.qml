import QtQuick
import Lamina

// Which type to save as.
SheetScreen {
    id: chooser

    name: qsTranslate("Lamina", "Save as")

    ChoiceRows {
        width: parent.width
        name: chooser.name
        model: chooser.controller.savingTypeCollectionView
        delegate: ChoiceRow {
            required property string savingImageName
            required property string saveformatnameLbl
            required property string infolbl
            required property bool selectbtn
            required property bool suggestedLbl
            required property int index
            width: parent.width
            iconName: savingImageName
            name: saveformatnameLbl
            info: infolbl
            marked: selectbtn
            suggested: suggestedLbl
            // The keyboard begins with the one in use, else with the one that suits best.
            focus: marked || (suggested && chooser.controller.selectedIndex >= 7)
            onClicked: chooser.controller.selectRow(index)
        }
    }
}
