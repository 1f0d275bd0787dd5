import QtQuick
import Lamina

// A short word on what has been done, on paper. It goes by itself, or at a tap.
Item {
    id: toast

    property string text
    property string shownText
    signal done()

    implicitWidth: Math.min(words.implicitWidth + 2 * Tokens.space.l, room)
    implicitHeight: words.implicitHeight + 2 * Tokens.space.m
    property real room: parent ? parent.width - 2 * Tokens.space.l : 0

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
        hold.restart()
    }

    Timer {
        id: hold
        interval: 4000
        onTriggered: toast.done()
    }
    Paper {
        anchors.fill: parent
        radius: Tokens.radius.hud
        role: "print"
        color: Tokens.palette.paperSoft
        StyledText {
            id: words
            anchors.centerIn: parent
            width: Math.min(implicitWidth, toast.room - 2 * Tokens.space.l)
            text: toast.shownText
            role: Tokens.type.caption
            strong: true
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            maximumLineCount: 4
            color: Tokens.palette.overPaperToast
            Accessible.ignored: true
        }
    }
    MouseArea {
        anchors.fill: parent
        onClicked: toast.done()
    }
}
