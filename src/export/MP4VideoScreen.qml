import QtQuick
import Lamina

ExporterScreen {
    id: exporter

    format: "MP4"

    SliderField {
        name: qsTranslate("Lamina", "Quality")
        from: exporter.controller.lowestQuality
        to: exporter.controller.highestQuality
        start: 1
        value: exporter.controller.qualityslider
        shownValue: exporter.controller.sizelbl
        shownValues: [qsTranslate("Lamina", "Low"), qsTranslate("Lamina", "Medium"), qsTranslate("Lamina", "High")]
        onMoved: value => exporter.controller.qualitySliderAction(value)
    }
}
