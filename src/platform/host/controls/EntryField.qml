import QtQuick
import QtQuick.Templates as T
import Lamina

// A line that is written in. What was written is told once the user is done with it, by Enter or by going elsewhere;
// until it is taken over the field shows again what it showed before.
T.TextField {
    id: field

    required property string name
    // What stands in it while nobody writes.
    required property string shownText
    // What was written last could not be taken; until the next letter.
    property bool wrong: false
    signal written(string text)

    // What was written and not told yet is forgotten; what is written next takes the place of all that stands there.
    function takeBack() {
        text = shownText
        if (activeFocus)
            selectAll()
    }
    function tell() {
        const told = text
        takeBack()
        if (told !== shownText)
            written(told)
    }

    implicitHeight: Math.max(Tokens.touch.minimum, contentHeight + Tokens.space.m)
    leftPadding: Tokens.space.s
    rightPadding: Tokens.space.s
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    color: Tokens.palette.text
    selectionColor: Tokens.palette.accent
    selectedTextColor: Tokens.palette.overAccent
    font.pixelSize: Theme.textSize(Tokens.type.body.size)
    Accessible.name: name

    Component.onCompleted: takeBack()
    onShownTextChanged: {
        wrong = false
        takeBack()
    }
    onTextEdited: wrong = false
    onEditingFinished: tell()
    onActiveFocusChanged: if (activeFocus) selectAll()
    // Enter without anything to tell is left to the screen.
    Keys.onPressed: event => {
        event.accepted = KeyTable.find("use", event.key, event.modifiers) >= 0 && text !== shownText
        if (event.accepted)
            tell()
    }

    background: Rectangle {
        radius: Tokens.radius.field
        color: Tokens.palette.field
        border.width: field.wrong ? 2 : 1
        border.color: field.wrong ? Tokens.palette.danger : Tokens.palette.fieldBorder
        FocusRing {
            control: field
            radius: parent.radius
        }
    }
}
