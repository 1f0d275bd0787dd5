import QtQuick
import QtQuick.Templates as T

// A button that is one of several choices. Which one is chosen, whoever holds the state says: a press asks for a
// change, and shows none by itself.
T.Button {
    id: choice

    property bool chosen: false

    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    checkable: true
    checked: chosen
    onToggled: checked = Qt.binding(() => choice.chosen)
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
