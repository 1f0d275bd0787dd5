import QtQuick
import QtQuick.Templates as T
import Lamina

// Over a live picture: the line between before and now, which its knob and the arrow keys move, and what is on either
// side of it.
Item {
    id: compare

    // A LiveViewController.
    required property var controller

    readonly property real knob: 36
    readonly property real reach: Tokens.touch.minimum / 2
    readonly property bool lined: controller.comparing && !controller.showsBefore

    T.Slider {
        id: slider
        anchors.fill: parent
        visible: compare.lined
        focusPolicy: Qt.StrongFocus
        stepSize: 0.02
        value: compare.controller.line
        onMoved: compare.controller.line = value
        Accessible.name: qsTranslate("Lamina", "Line between before and now")
        Accessible.description: Theme.spoken(qsTranslate("Lamina", "%1 %").arg(Math.round(value * 100)), enabled)
        // The picture beside the line is for fingers on it.
        containmentMask: QtObject {
            function contains(point: point) : bool {
                return Math.abs(point.x - slider.value * slider.width) <= compare.reach && point.y >= 0 && point.y <= slider.height
            }
        }
        HoverHandler {
            cursorShape: Qt.SizeHorCursor
        }
        background: Item {
            Rectangle {
                x: Math.round(slider.visualPosition * parent.width - width / 2)
                width: 2
                height: parent.height
                color: Tokens.palette.paper
            }
        }
        handle: Rectangle {
            x: slider.visualPosition * slider.width - width / 2
            y: (slider.height - height) / 2
            width: compare.knob
            height: width
            radius: width / 2
            color: slider.pressed ? Tokens.palette.panelRaised : Tokens.palette.ground
            border.width: 2
            border.color: Tokens.palette.paper
            Row {
                anchors.centerIn: parent
                spacing: -2
                Icon {
                    name: "back"
                    size: 14
                }
                Icon {
                    name: "forward"
                    size: 14
                }
            }
            FocusRing {
                radius: parent.radius
                control: slider
            }
        }
    }

    component Plate: Rectangle {
        property alias text: words.text
        y: parent.height - height - Tokens.space.m
        width: words.implicitWidth + 2 * Tokens.space.s + 2
        height: words.implicitHeight + Tokens.space.s
        radius: height / 2
        color: Qt.alpha(Tokens.palette.ground, 0.78)
        StyledText {
            id: words
            anchors.centerIn: parent
            role: Tokens.type.label
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }
    }
    Plate {
        id: before
        x: Tokens.space.m - 2
        visible: compare.controller.showsBefore || (compare.lined && slider.visualPosition * parent.width > x + width)
        text: qsTranslate("Lamina", "Before")
    }
    Plate {
        x: parent.width - width - Tokens.space.m + 2
        visible: compare.lined && slider.visualPosition * parent.width < x
        text: qsTranslate("Lamina", "Now")
    }
}
