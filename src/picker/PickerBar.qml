import QtQuick
import QtQuick.Templates as T
import Lamina

// The bar over the picker's screens: a way out at the left, a title in the middle, which may open something, and what
// the screen is for at the right. Where large letters leave the title no room, it takes a line of its own.
Item {
    id: bar

    // Of the controller: colours by their names.
    required property var theme
    property string title
    // A quiet line under the title.
    property string note
    // The title is a button, of this command of the KeyTable.
    property bool opens: false
    property string opensCommand
    property string leftText
    property string leftIcon
    property string leftName: leftText
    property string rightText
    property string rightIcon
    property bool rightEnabled: true
    property string rightCommand
    signal leave()
    signal act()
    signal opened()

    readonly property var titleRole: ({ size: theme.titleSize, weight: Tokens.type.pickerTitle.weight })
    readonly property bool holdsFocus: leftButton.activeFocus || titleButton.activeFocus || rightButton.activeFocus
    // What the text of the bar needs. Names of albums may be of any length: only large letters take a second line.
    readonly property real sides: Math.max(leftButton.width, rightButton.visible ? rightButton.width : 0) + 2 * Tokens.space.s
    readonly property real chevron: opens ? Tokens.icon.grid + 10 : 0
    readonly property bool stacked: Theme.textScale > 1.2 && titleFit.widest + chevron + 2 * Tokens.space.s > width - 2 * sides
    readonly property real titleHeight: Math.max(Tokens.touch.minimum, words.height + Tokens.space.xs)
    readonly property real firstRow: Math.max(Tokens.bars.picker, leftButton.height + Tokens.space.s, stacked ? 0 : titleHeight + Tokens.space.s)

    height: firstRow + (stacked ? titleHeight + Tokens.space.xs : 0)
    // The names of its buttons come out under it, over the screen.
    z: 1

    LabelFit {
        id: titleFit
        texts: [bar.title]
        room: bar.width
        role: bar.titleRole
    }

    Rectangle {
        anchors.fill: parent
        color: bar.theme.navigationBarBackgroundColor
        // What lies under the bar is not reached through it.
        MouseArea {
            anchors.fill: parent
            onWheel: wheel => wheel.accepted = false
        }
    }
    PickerButton {
        id: leftButton
        x: Tokens.space.s
        y: (bar.firstRow - height) / 2
        theme: bar.theme
        text: bar.leftText
        iconName: bar.leftIcon
        name: bar.leftName
        command: "back"
        onClicked: bar.leave()
    }
    T.Button {
        id: titleButton

        readonly property real room: bar.stacked ? bar.width - 2 * Tokens.space.s : bar.width - 2 * bar.sides

        x: (bar.width - width) / 2
        y: bar.stacked ? bar.firstRow - Tokens.space.xs : (bar.firstRow - height) / 2
        width: Math.min(room, Math.max(titleFit.widest + 1 + bar.chevron, noteText.implicitWidth) + 2 * Tokens.space.s)
        height: bar.titleHeight
        enabled: bar.opens
        visible: bar.opens
        hoverEnabled: true
        focusPolicy: Qt.StrongFocus
        Accessible.name: bar.title
        Accessible.description: Theme.spoken(qsTranslate("Lamina", "Albums") + ". " + KeyTable.words(bar.opensCommand), enabled)
        Accessible.onPressAction: clicked()
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        onClicked: bar.opened()
        background: Rectangle {
            radius: Tokens.radius.cell
            color: Qt.alpha(bar.theme.titleLabelTextColor, titleButton.hovered ? 0.1 : 0)
            FocusRing {
                radius: parent.radius
                inside: true
                control: titleButton
            }
        }
        Tip {
            text: qsTranslate("Lamina", "Albums")
            command: bar.opensCommand
            shown: !titleButton.down && (titleButton.hovered || (titleButton.activeFocus && Host.focusVisible))
        }
    }
    Column {
        id: words

        anchors.centerIn: titleButton
        opacity: titleButton.down ? Tokens.opacity.pressedIcon : 1
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 10
            StyledText {
                id: titleText
                width: Math.min(Math.ceil(titleFit.widest) + 1, titleButton.room - bar.chevron - 2 * Tokens.space.s)
                text: bar.title
                role: bar.titleRole
                color: bar.theme.titleLabelTextColor
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.NoWrap
                Accessible.role: Accessible.Heading
                Accessible.name: text
                Accessible.ignored: bar.opens || text === ""
            }
            Icon {
                visible: bar.opens
                anchors.verticalCenter: parent.verticalCenter
                name: "YMSIconSpinnerDropdwon"
                tint: bar.theme.titleLabelTextColor
            }
        }
        StyledText {
            id: noteText
            anchors.horizontalCenter: parent.horizontalCenter
            visible: text !== ""
            text: bar.note
            role: Tokens.type.label
            color: bar.theme.titleLabelTextColor
            wrapMode: Text.NoWrap
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
            Accessible.ignored: text === ""
        }
    }
    PickerButton {
        id: rightButton
        x: bar.width - width - Tokens.space.s
        y: (bar.firstRow - height) / 2
        visible: text !== "" || iconName !== ""
        enabled: bar.rightEnabled
        theme: bar.theme
        text: bar.rightText
        iconName: bar.rightIcon
        strong: true
        command: bar.rightCommand
        onClicked: bar.act()
    }
}
