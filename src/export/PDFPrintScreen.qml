import QtQuick
import Lamina

ExporterScreen {
    id: exporter

    format: "PDF"
    tellsPixels: false

    FieldButton {
        name: qsTranslate("Lamina", "Color profile")
        value: exporter.controller.colorProfileLbl
        onClicked: exporter.controller.handleprofileTap()
    }
    Column {
        width: parent.width
        CheckRow {
            text: qsTranslate("Lamina", "Crop marks")
            chosen: exporter.controller.cropSelect
            onClicked: exporter.controller.handlecropTap()
        }
        CheckRow {
            text: qsTranslate("Lamina", "Note line")
            chosen: exporter.controller.notesChoose
            onClicked: exporter.controller.handlenotTap()
        }
        CheckRow {
            text: qsTranslate("Lamina", "300 pixels per inch")
            info: exporter.controller.printSizeLbl
            chosen: exporter.controller.ppiSelect
            onClicked: exporter.controller.handleppiTap()
        }
    }
}
