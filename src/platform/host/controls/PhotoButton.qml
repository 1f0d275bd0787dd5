import QtQuick
import Lamina

// Selects one photo of a composition, and says its name and where it lies. Beside it the button of its menu, which a
// long press, a right click and a key ask for too.
SelectorButton {
    id: button

    required property string title
    required property string caption
    // It said in full.
    property string spokenCaption: caption
    // What its menu is called; empty: it has none. A slim button has no room for the menu's own.
    property string menuName
    property bool menuOpen: false
    readonly property bool narrow: width < 160
    signal menuAsked()

    function askForMenu() {
        if (menuName !== "")
            menuAsked()
    }

    name: title
    description: spokenCaption
    textHeight: titleText.lineHeight + captionText.lineHeight
    endRoom: menu.visible ? menu.width : 0
    onHeld: askForMenu()
    Keys.onPressed: event => {
        event.accepted = menuName !== "" && KeyTable.find("photoMenu", event.key, event.modifiers) >= 0
        if (event.accepted)
            menuAsked()
    }

    Column {
        anchors.left: parent.left
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
    data: IconButton {
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
}
