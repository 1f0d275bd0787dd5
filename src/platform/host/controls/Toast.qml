import QtQuick
import QtQuick.Templates as T
import Lamina

// A short word on what has been done, on paper, with at most one thing to do about it. It goes by itself, or at a tap;
// not while a pointer rests on it or its action has the keyboard.
Item {
    id: toast

    property string text
    property string shownText
    // What can be done; empty: nothing.
    property string action
    property string shownAction
    property real room: parent ? parent.width - 2 * Tokens.space.l : 0
    // A sentence takes a second line where it needs one; what is long otherwise is a file's name.
    property bool sentence: false
    // Something was done; else it is a mere word on what was not.
    property bool good: true
    // False: somebody else sees to its time.
    property bool timed: true
    signal done()
    signal acted()

    readonly property bool hasAction: shownAction !== ""
    readonly property real actionRoom: hasAction ? act.implicitWidth : 0
    readonly property bool held: hover.hovered || act.activeFocus

    width: Math.min(words.x + words.implicitWidth + (hasAction ? actionRoom : Tokens.space.l), room)
    height: hasAction ? Tokens.touch.minimum : words.height + 22
    opacity: text !== "" ? 1 : 0
    visible: opacity > 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: shownText
    Behavior on opacity {
        NumberAnimation { duration: Theme.duration(Tokens.motion.fade) }
    }
    onTextChanged: {
        if (text === "")
            return
        shownText = text
        shownAction = action
        wait()
    }
    onActionChanged: if (text !== "") shownAction = action
    onHeldChanged: if (!held) wait()

    function wait() {
        if (timed)
            hold.restart()
    }

    Timer {
        id: hold
        interval: toast.hasAction ? 8000 : 4000
        onTriggered: if (!toast.held) toast.done()
    }
    HoverHandler {
        id: hover
    }
    MouseArea {
        anchors.fill: parent
        onClicked: toast.done()
    }
    Paper {
        anchors.fill: parent
        radius: Math.min(Tokens.radius.pill, height / 2)
        role: "print"
        color: Tokens.palette.paperSoft
        Icon {
            x: Tokens.space.m
            anchors.verticalCenter: parent.verticalCenter
            visible: toast.good
            name: "check_dark"
            size: 20
        }
        StyledText {
            id: words
            x: toast.good ? Tokens.space.m + 20 + Tokens.space.s : Tokens.space.l
            anchors.verticalCenter: parent.verticalCenter
            width: toast.width - x - (toast.hasAction ? toast.actionRoom : Tokens.space.l)
            text: toast.shownText
            role: Tokens.type.caption
            strong: true
            // The beginning and the end of a name tell most.
            wrapMode: toast.sentence ? Text.WordWrap : Text.NoWrap
            elide: toast.sentence ? Text.ElideRight : Text.ElideMiddle
            maximumLineCount: 2
            color: Tokens.palette.overPaperToast
            Accessible.ignored: true
        }
        T.Button {
            id: act
            visible: toast.hasAction
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            implicitWidth: Math.max(Tokens.touch.minimum, label.implicitWidth + 2 * Tokens.space.l)
            implicitHeight: Tokens.touch.minimum
            focusPolicy: Qt.StrongFocus
            Accessible.name: toast.shownAction
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
            onClicked: toast.acted()
            background: FocusRing {
                radius: Tokens.radius.pill
                control: act
            }
            contentItem: Item {
                StyledText {
                    id: label
                    anchors.centerIn: parent
                    text: toast.shownAction
                    role: Tokens.type.caption
                    strong: true
                    font.underline: true
                    wrapMode: Text.NoWrap
                    color: Tokens.palette.overPaper
                    Accessible.ignored: true
                }
            }
        }
    }
}
