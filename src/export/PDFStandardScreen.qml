import QtQuick
import Lamina

ExporterScreen {
    id: exporter

    format: "PDF"

    CheckRow {
        text: qsTranslate("Lamina", "Note line")
        chosen: exporter.controller.notesChoose
        onClicked: exporter.controller.handlenotTap()
    }
}
