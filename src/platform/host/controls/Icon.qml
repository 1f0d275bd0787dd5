import QtQuick
import Lamina

// One of our icons or pieces of art, sharp at the display's pixels.
Image {
    property string name
    property real size: Tokens.icon.grid
    // Drawn in this one colour, whatever its own are; transparent: in its own.
    property color tint: "transparent"

    width: size
    height: size
    source: name === "" ? "" : "image://art/" + name + (tint.a > 0 ? "?" + encodeURIComponent(tint) : "")
    sourceSize: Qt.size(Math.round(width * Screen.devicePixelRatio), Math.round(height * Screen.devicePixelRatio))
    fillMode: Image.PreserveAspectFit
    smooth: true
}
