import QtQuick
import Lamina

// How large the picture is to be, in the points that were told and in the pixels of the file.
SliderField {
    // A SizedExporterController.
    required property var controller

    name: qsTranslate("Lamina", "Size")
    from: controller.smallestSize
    to: controller.largestSize
    start: 1
    value: controller.sizeSlider
    shownValue: controller.sizeValueLbl
    meaning: controller.pxLbl
    note: controller.filePixels === "" ? "" : qsTranslate("Lamina", "%1 in the file").arg(controller.filePixels)
    onMoved: value => controller.sizeSliderAction(value)
}
