import QtQuick
import Lamina

ExporterScreen {
    id: exporter

    format: "SVG"

    CheckRow {
        text: qsTranslate("Lamina", "Transparent background")
        chosen: exporter.controller.trasparentChoose
        onClicked: exporter.controller.handletrasnparentTap()
    }
}
