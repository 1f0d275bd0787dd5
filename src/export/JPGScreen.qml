import QtQuick
import Lamina

ExporterScreen {
    id: exporter

    format: "JPG"
    tellsPixels: false

    SizeField {
        controller: exporter.controller
    }
    SliderField {
        name: qsTranslate("Lamina", "Quality")
        from: exporter.controller.lowestQuality
        to: exporter.controller.highestQuality
        start: to
        value: exporter.controller.qualitySlider
        shownValue: exporter.controller.qualityValueLbl
        meaning: exporter.controller.fileSizeLbl
        onMoved: value => exporter.controller.qualitySlideraction(value)
    }
}
