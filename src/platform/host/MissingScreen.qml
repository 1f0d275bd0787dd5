import QtQuick
import Lamina

// A screen whose layout is not there: its name, so that it is found.
AppScreen {
    StyledText {
        anchors.centerIn: parent
        text: parent.controller.className
        Accessible.name: text
    }
}
