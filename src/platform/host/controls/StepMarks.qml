import QtQuick
import Lamina

// How far the user has come.
Row {
    id: marks

    property int step: 1
    property int count: 2

    spacing: 6
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTranslate("Lamina", "Step %1 of %2").arg(step).arg(count)

    Repeater {
        model: marks.count
        delegate: Rectangle {
            required property int index
            width: 28
            height: 4
            radius: 2
            color: index < marks.step ? Tokens.palette.accent : Tokens.palette.hairline
        }
    }
}
