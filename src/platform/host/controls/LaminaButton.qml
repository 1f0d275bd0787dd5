import QtQuick
import QtQuick.Templates as T
import Lamina

// The button with a text. One accent button on a screen, the others quiet.
T.Button {
    id: button

    property string iconName
    // "accent", "quiet", or "pill": the small accent button in a bar.
    property string kind: "accent"
    property bool danger: false

    readonly property bool filled: kind !== "quiet"
    readonly property real visibleHeight: kind === "pill" ? 36 : Math.max(Tokens.touch.button, row.implicitHeight + Tokens.space.l)

    readonly property real iconRoom: iconName === "" ? 0 : Tokens.icon.grid + row.spacing
    // Of the text on one line; asked of the letters, since a text that wraps changes its mind.
    readonly property real textWidth: Math.ceil(whole.widest) + 1

    implicitHeight: Math.max(visibleHeight, Tokens.touch.minimum)
    implicitWidth: Math.max(kind === "pill" ? 72 : 0, iconRoom + textWidth + 2 * (kind === "pill" ? 18 : Tokens.space.l))
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Accessible.description: Theme.spoken("", enabled)
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    LabelFit {
        id: whole
        texts: [button.text]
        room: fit.room
        role: fit.role
        weight: fit.weight
    }
    // Words are not broken; the small button has them all on one line.
    LabelFit {
        id: fit
        texts: button.kind === "pill" ? [button.text] : button.text.split(" ")
        room: button.width - 2 * Tokens.space.m - button.iconRoom
        role: Tokens.type.body
        weight: Tokens.type.body.weightStrong
    }
    function fill() {
        if (!filled)
            return down ? Tokens.palette.field : hovered ? Tokens.palette.cell : Tokens.palette.panelRaised
        if (!enabled)
            return Tokens.palette.accentDisabled
        return down ? Tokens.palette.accentPressed : hovered ? Tokens.palette.accentHover : Tokens.palette.accent
    }

    background: Item {
        Rectangle {
            anchors.centerIn: parent
            width: parent.width
            height: button.visibleHeight
            radius: button.kind === "pill" ? Tokens.radius.pill : Tokens.radius.button
            color: button.fill()
            opacity: button.enabled || button.filled ? 1 : Tokens.opacity.disabled
            FocusRing {
                radius: parent.radius
                control: button
            }
        }
    }
    contentItem: Item {
        Row {
            id: row
            anchors.centerIn: parent
            spacing: Tokens.space.m
            opacity: button.enabled || button.filled ? 1 : Tokens.opacity.disabled
            Icon {
                visible: button.iconName !== ""
                name: button.iconName
                anchors.verticalCenter: parent.verticalCenter
            }
            StyledText {
                id: words
                text: button.text
                strong: true
                anchors.verticalCenter: parent.verticalCenter
                font.pixelSize: fit.size
                width: Math.min(button.textWidth, fit.room)
                maximumLineCount: button.kind === "pill" ? 1 : 2
                Accessible.ignored: true
                horizontalAlignment: Text.AlignHCenter
                color: button.danger ? Tokens.palette.danger
                     : !button.filled ? Tokens.palette.text
                     : button.enabled ? Tokens.palette.overAccent : Tokens.palette.overAccentDisabled
            }
        }
    }
}
