pragma Singleton
import QtQuick
import Lamina

// How the look bends to the user: the size of text, and whether things may move.
QtObject {
    readonly property real textScale: SystemSettings.textScale
    readonly property bool reducedMotion: SystemSettings.reducedMotion

    // The height of a line that the system's font asks for, at a size of 1.
    readonly property real fontHeight: metrics.height / metrics.font.pixelSize
    readonly property FontMetrics metrics: FontMetrics {
        font.pixelSize: 100
    }

    function textSize(points) {
        return Math.max(Tokens.type.minimum, Math.round(points * textScale))
    }

    // A control's description for those who hear the screen. Qt tells nobody that a control is disabled; the words do.
    function spoken(description, enabled) {
        const unavailable = qsTranslate("Lamina", "Not available now")
        return enabled ? description : description === "" ? unavailable : unavailable + ". " + description
    }

    // Milliseconds that a movement takes.
    function duration(milliseconds) {
        return reducedMotion ? 0 : milliseconds
    }
}
