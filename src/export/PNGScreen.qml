import QtQuick
import Lamina

ExporterScreen {
    id: exporter

    format: "PNG"
    tellsPixels: false

    SizeField {
        controller: exporter.controller
    }
    CheckRow {
        text: qsTranslate("Lamina", "Transparent background")
        chosen: exporter.controller.trasparentBool
        onClicked: exporter.controller.handletrasnparentTap()
    }
}
