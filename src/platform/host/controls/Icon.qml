import QtQuick
import Lamina

// One of our icons or pieces of art, sharp at the display's pixels.
Image {
    property string name
    property real size: Tokens.icon.grid

    width: size
    height: size
    source: name === "" ? "" : "image://art/" + name
    sourceSize: Qt.size(Math.round(width * Screen.devicePixelRatio), Math.round(height * Screen.devicePixelRatio))
    fillMode: Image.PreserveAspectFit
    smooth: true
}
