import QtQuick
import Lamina

// Selects one photo of a composition: how it looks now, its name, and where it lies. Beside it the button of its menu,
// which a long press, a right click and a key ask for too.
Item {
    id: button

    required property string title
    required property string caption
    // It said in full.
    property string spokenCaption: caption
    property var picture
    property bool selected: false
    property bool dimmed: false
    // What its menu is called; empty: it has none.
    property string menuName
    property bool menuOpen: false
    // The picture alone; a pointer that rests is told the name. There is no room for the menu's button then.
    property bool slim: false
    readonly property bool narrow: width < 160
    signal clicked()
    signal menuAsked()

    implicitHeight: choice.implicitHeight
    // The tip lies over what stands below the button.
    z: tip.visible ? 1 : 0

    Rectangle {
        anchors.fill: parent
        radius: Tokens.radius.selector
        color: button.selected || choice.down ? Tokens.palette.panelRaised : choice.hovered ? Tokens.palette.panel : Tokens.palette.field
        border.width: 1.5
        border.color: button.selected ? Tokens.palette.accentText : Tokens.palette.hairline
        FocusRing {
            radius: parent.radius
            control: choice
        }
    }

    ChoiceButton {
        id: choice

        // The texts may shrink to their width, their lines don't.
        readonly property string caption: button.caption

        width: menu.visible ? parent.width - menu.width : parent.width
        height: parent.height
        implicitHeight: button.slim ? Tokens.bars.selector
            : Math.max(Tokens.bars.selector, titleText.lineHeight + captionText.lineHeight + Tokens.space.m)
        chosen: button.selected
        Accessible.name: button.title
        Accessible.description: Theme.spoken(button.spokenCaption, enabled)
        onClicked: button.clicked()
        onPressAndHold: button.askForMenu()
        Keys.onPressed: event => {
            event.accepted = button.menuName !== "" && KeyTable.find("photoMenu", event.key, event.modifiers) >= 0
            if (event.accepted)
                button.menuAsked()
        }
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.RightButton
            onPressed: button.askForMenu()
        }

        contentItem: Item {
            Rectangle {
                id: thumb
                x: 7
                anchors.verticalCenter: parent.verticalCenter
                width: Tokens.thumbs.selector
                height: Tokens.thumbs.selector
                radius: Tokens.radius.thumb
                color: Tokens.palette.field
                opacity: button.dimmed ? Tokens.opacity.photoHeldFixed : 1
                // A photo that one can see through stands on paper, whose corners don't show beside the photo's own.
                Rectangle {
                    anchors.fill: parent
                    anchors.margins: 1
                    visible: !shown.empty
                    radius: Tokens.radius.thumb
                    color: Tokens.palette.paper
                }
                Icon {
                    anchors.centerIn: parent
                    name: "Gallery"
                    opacity: Tokens.opacity.disabled
                    visible: shown.empty
                }
                Picture {
                    id: shown
                    anchors.fill: parent
                    picture: button.picture
                    radius: Tokens.radius.thumb
                }
            }
            Column {
                visible: !button.slim
                anchors.left: thumb.right
                anchors.leftMargin: button.narrow ? Tokens.space.s : 10
                anchors.right: parent.right
                // The dots have room on both sides.
                anchors.rightMargin: menu.visible ? -Tokens.space.s : button.narrow ? Tokens.space.xs : Tokens.space.s
                anchors.verticalCenter: parent.verticalCenter
                StyledText {
                    id: titleText
                    width: parent.width
                    text: button.title
                    role: Tokens.type.caption
                    strong: true
                    wrapMode: Text.NoWrap
                    fontSizeMode: Text.HorizontalFit
                    minimumPixelSize: Tokens.type.minimum
                    Accessible.ignored: true
                    color: button.selected ? Tokens.palette.overAccent : Tokens.palette.text
                    opacity: button.selected ? 1 : 0.8
                }
                StyledText {
                    id: captionText
                    width: parent.width
                    text: button.caption
                    role: Tokens.type.label
                    font.weight: 400
                    wrapMode: Text.NoWrap
                    fontSizeMode: Text.HorizontalFit
                    minimumPixelSize: Tokens.type.minimum
                    Accessible.ignored: true
                    color: Tokens.palette.textSecondary
                }
            }
        }
    }
    IconButton {
        id: menu
        visible: button.menuName !== "" && !button.slim
        anchors.right: parent.right
        height: parent.height
        topInset: Tokens.space.xs
        bottomInset: topInset
        leftInset: topInset
        rightInset: topInset
        lit: button.menuOpen
        iconName: button.menuOpen ? "more_upright_accent" : "more_upright"
        name: button.menuName
        command: "photoMenu"
        onClicked: button.menuAsked()
    }

    Tip {
        id: tip
        text: button.title
        shown: button.slim && choice.hovered && !choice.down
    }

    function takeFocus() {
        choice.forceActiveFocus(Qt.TabFocusReason)
    }
    function askForMenu() {
        if (menuName !== "")
            menuAsked()
    }
}
