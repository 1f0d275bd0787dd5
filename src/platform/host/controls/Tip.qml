import QtQuick
import Lamina

// The name of a control without a text, and its keys, under it (over it at the window's foot), while a pointer rests
// there or the keyboard has led there.
Rectangle {
    id: tip

    property string text
    // Of the KeyTable; empty: no keys.
    property string command
    property bool shown: false

    visible: false
    z: 1
    anchors.horizontalCenter: parent.horizontalCenter
    y: {
        const below = parent.height + Tokens.space.xs
        return visible && parent.mapToItem(null, 0, below + height).y > Window.height ? -height - Tokens.space.xs : below
    }
    // Kept inside the window where the control stands at its edge.
    anchors.horizontalCenterOffset: {
        const left = parent.mapToItem(null, parent.width / 2, 0).x - width / 2
        const right = left + width - (Window.width - Tokens.space.s)
        return visible ? Math.max(0, Tokens.space.s - left) - Math.max(0, right) : 0
    }
    width: row.implicitWidth + 2 * Tokens.space.s
    height: row.implicitHeight + Tokens.space.s
    radius: Tokens.radius.field
    color: Tokens.palette.panelAlert
    border.width: 1
    border.color: Tokens.palette.outline
    Accessible.ignored: true

    onShownChanged: {
        if (shown) {
            rest.restart()
        } else {
            rest.stop()
            visible = false
        }
    }
    Timer {
        id: rest
        interval: 600
        onTriggered: tip.visible = true
    }
    Row {
        id: row
        anchors.centerIn: parent
        spacing: Tokens.space.s
        StyledText {
            anchors.verticalCenter: parent.verticalCenter
            text: tip.text
            role: Tokens.type.caption
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }
        KeyCaps {
            visible: tip.command !== ""
            command: tip.visible ? tip.command : ""
        }
    }
}
