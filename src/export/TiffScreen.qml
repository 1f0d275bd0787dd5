import QtQuick
import Lamina

ExporterScreen {
    format: "TIFF"
}
