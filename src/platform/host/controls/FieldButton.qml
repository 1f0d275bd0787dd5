import QtQuick
import QtQuick.Templates as T
import Lamina

// A field with what was chosen; pressed, it opens the choices.
T.Button {
    id: field

    required property string name
    // What was chosen. What stands in parentheses is said more quietly.
    required property string value
    property string iconName
    property bool suggested: false

    // Whether the mark stands at the right of what was chosen, or has to go below it.
    readonly property bool roomy: loud.implicitWidth + mark.width + 3 * Tokens.space.s < arrow.x - words.x
    readonly property int quietFrom: value.indexOf(" (")

    x: Tokens.space.sheetMargin
    width: parent ? parent.width - 2 * x : 0
    implicitHeight: label.height + Tokens.space.xs + frame.height
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: name
    Accessible.description: suggested ? value + ". " + mark.text : value
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        StyledText {
            id: label
            width: parent.width
            text: field.name
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            Accessible.ignored: true
        }
        Rectangle {
            id: frame
            y: field.height - height
            width: parent.width
            height: Math.max(Tokens.touch.button, words.height + Tokens.space.l)
            radius: Tokens.radius.field
            color: field.down ? Tokens.palette.cell : field.hovered ? Tokens.palette.panelRaised : Tokens.palette.field
            border.width: 1
            border.color: Tokens.palette.fieldBorder
            FocusRing {
                control: field
                radius: parent.radius
            }
            Icon {
                id: sign
                visible: field.iconName !== ""
                x: visible ? Tokens.space.m : 0
                width: visible ? size : 0
                anchors.verticalCenter: parent.verticalCenter
                name: field.iconName
            }
            Flow {
                id: words
                anchors.left: sign.right
                anchors.leftMargin: Tokens.space.m
                anchors.right: arrow.left
                anchors.rightMargin: Tokens.space.s
                anchors.verticalCenter: parent.verticalCenter
                spacing: Tokens.space.xs
                StyledText {
                    id: loud
                    width: Math.min(implicitWidth, parent.width)
                    text: field.quietFrom < 0 ? field.value : field.value.slice(0, field.quietFrom)
                    Accessible.ignored: true
                }
                StyledText {
                    visible: text !== ""
                    width: Math.min(implicitWidth, parent.width)
                    text: field.quietFrom < 0 ? "" : field.value.slice(field.quietFrom + 1)
                    role: Tokens.type.caption
                    lineHeight: loud.lineHeight
                    color: Tokens.palette.textSecondary
                    Accessible.ignored: true
                }
                SuggestedMark {
                    visible: field.suggested && !field.roomy
                }
            }
            SuggestedMark {
                id: mark
                visible: field.suggested && field.roomy
                anchors.right: arrow.left
                anchors.rightMargin: Tokens.space.s
                anchors.verticalCenter: parent.verticalCenter
            }
            Icon {
                id: arrow
                anchors.right: parent.right
                anchors.rightMargin: 10
                anchors.verticalCenter: parent.verticalCenter
                name: "YMSIconSpinnerDropdwon"
            }
        }
    }
}
