import QtQuick
import Lamina

// Makes a colour: a square and a bar on a canvas, beside or above what tells of the colour in words. Where there is
// room it is a card.
AppScreen {
    id: picker

    readonly property bool carded: wide || tablet
    readonly property bool halved: lying || small

    name: controller.title

    // What is written is taken along by who is done. Of what can't be taken one hears first: the second time is with
    // the color that is shown.
    property bool warned: false
    function takesWritten() {
        hex.tell()
        warned = hex.wrong && !warned
        if (warned)
            hex.forceActiveFocus()
        return !warned
    }
    onBack: {
        hex.takeBack()
        controller.cancel()
    }
    Keys.onPressed: event => {
        const use = KeyTable.find("use", event.key, event.modifiers) >= 0
        event.accepted = event.accepted || use
        if (use && takesWritten())
            controller.done()
    }

    Rectangle {
        visible: picker.carded
        anchors.fill: pane
        radius: Tokens.radius.homeCardWide
        color: Tokens.palette.panel
        border.width: 1
        border.color: Tokens.palette.cardEdge
    }

    Item {
        id: pane
        width: picker.carded ? Tokens.layout.columnMost : parent.width
        height: picker.carded ? Math.min(bar.height + content.wanted, parent.height - 2 * Tokens.space.xxl) : parent.height
        anchors.centerIn: parent

        ScrollPage {
            id: page
            y: bar.height
            width: parent.width
            height: parent.height - y
            contentHeight: Math.max(height, content.needed)
            clip: interactive

            Item {
                id: content

                readonly property real inset: Tokens.space.sheetMargin
                readonly property real inner: width - 2 * inset
                readonly property real gap: picker.halved ? Tokens.space.m : Tokens.space.xl
                // All but the square and the swatches' height.
                readonly property real fixed: Tokens.touch.minimum + gap + Tokens.space.s + words.height + gap
                readonly property real above: picker.halved ? Tokens.space.s : gap
                readonly property real leastSwatch: Tokens.touch.minimum
                readonly property real mostSwatch: 84
                readonly property real leastSquare: 120
                // Under each other, with a square as high as it is wide.
                readonly property real wanted: above + inner + gap + fixed + mostSwatch
                readonly property real needed: above + (picker.halved ? 0 : leastSquare + gap) + fixed + leastSwatch

                readonly property real free: height - above - fixed - (picker.halved ? 0 : inner + gap)
                readonly property real swatch: Math.max(leastSwatch, Math.min(mostSwatch, free))
                // Beside each other the words need some room.
                readonly property real leastColumn: Math.max(136, Math.min(0.42 * inner, 264))
                readonly property real beside: Math.min(picker.height - bar.height - above - gap, inner - inset - leastColumn)
                readonly property real columnWidth: picker.halved ? inner - beside - inset : inner

                readonly property rect square: picker.halved
                    ? Qt.rect(inset, above, beside, height - above - gap)
                    : Qt.rect(inset, above, inner, Math.max(leastSquare, Math.min(inner, height - above - gap - fixed - swatch)))
                readonly property rect hues: Qt.rect(inset + inner - columnWidth, picker.halved ? above : square.y + square.height + gap,
                                                     columnWidth, Tokens.touch.minimum)
                readonly property rect swatches: Qt.rect(hues.x, hues.y + hues.height + gap, hues.width, swatch)
                readonly property var places: [Qt.size(width, height), square, hues, swatches]

                width: page.width
                height: page.contentHeight
                onPlacesChanged: picker.controller.placeViews(...places)

                ViewCanvas {
                    id: canvas
                    objectName: "canvas"
                    anchors.fill: parent
                    controller: picker.controller
                    focus: true

                    // Arrows move what was moved last, or has the focus.
                    function takesKey(tag, event) {
                        const near = KeyTable.find("move", event.key, event.modifiers)
                        const far = KeyTable.find("moveFar", event.key, event.modifiers)
                        const ways = [[-1, 0], [1, 0], [0, 1], [0, -1]]
                        const way = ways[Math.max(near, far)]
                        const step = far < 0 ? 0.01 : 0.1
                        return way !== undefined && picker.controller.stepBy(tag, step * way[0], step * way[1])
                    }
                    Keys.onPressed: event => event.accepted = takesKey(0, event)

                    CanvasControls {
                        canvas: canvas
                        takesKey: canvas.takesKey
                    }
                }

                Item {
                    id: words

                    readonly property bool narrow: width < 300 * Theme.textScale
                    readonly property real half: width / 2

                    x: content.inset + content.inner - width
                    y: content.swatches.y + content.swatches.height + Tokens.space.s
                    width: content.columnWidth
                    height: values.y + values.height

                    StyledText {
                        id: before
                        width: words.half - Tokens.space.s
                        y: words.narrow ? 0 : (hex.height - height) / 2
                        text: words.narrow ? qsTranslate("Lamina", "Before") : qsTranslate("Lamina", "Before. Tap to go back")
                        role: Tokens.type.caption
                        color: Tokens.palette.textSecondary
                        maximumLineCount: 2
                        Accessible.ignored: true
                    }
                    StyledText {
                        id: now
                        x: words.half + Tokens.space.xs
                        y: words.narrow ? 0 : (hex.height - height) / 2
                        text: qsTranslate("Lamina", "Now")
                        role: Tokens.type.caption
                        strong: true
                        Accessible.ignored: true
                    }
                    EntryField {
                        id: hex
                        objectName: "hex"
                        x: words.narrow ? 0 : now.x + now.width + Tokens.space.s
                        y: words.narrow ? before.height + Tokens.space.xs : 0
                        width: words.narrow ? words.width : words.width - x
                        name: qsTranslate("Lamina", "Color in digits")
                        shownText: picker.controller.hexText
                        Accessible.description: wrong ? values.text : ""
                        maximumLength: 16
                        inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhPreferUppercase
                        onWrongChanged: picker.warned = false
                        onWritten: text => wrong = !picker.controller.takeHexText(text)
                    }
                    Rectangle {
                        id: line
                        visible: !picker.halved
                        y: hex.y + hex.height + Tokens.space.m
                        width: parent.width
                        height: 1
                        color: Tokens.palette.hairline
                    }
                    StyledText {
                        id: values
                        y: line.visible ? line.y + Tokens.space.m : hex.y + hex.height + Tokens.space.s
                        width: parent.width
                        text: hex.wrong ? qsTranslate("Lamina", "Three or six digits of 0 to 9 and A to F, such as #E5906F")
                            : qsTranslate("Lamina", "%1° hue, %2 % saturation, %3 % brightness")
                                .arg(picker.controller.hueDegrees).arg(picker.controller.saturationPercent)
                                .arg(picker.controller.brightnessPercent).replace(/ %/g, "\u00a0%")
                        role: Tokens.type.caption
                        color: hex.wrong ? Tokens.palette.danger : Tokens.palette.textSecondary
                        Accessible.role: Accessible.StaticText
                        Accessible.name: text
                    }
                }
            }
        }

        TopBar {
            id: bar
            width: parent.width
            large: picker.carded
            centered: true
            title: picker.name
            backIcon: "YMSIconCancel"
            backName: qsTranslate("Lamina", "Close")
            onBack: picker.back()

            LaminaButton {
                readonly property var item: picker.controller.rightBarButtonItem
                visible: item !== null
                width: Math.min(implicitWidth, bar.room)
                kind: "pill"
                text: item ? item.title : ""
                onClicked: if (picker.takesWritten()) item.press()
            }
        }
        Rectangle {
            y: bar.height - 1
            width: parent.width
            height: 1
            color: Tokens.palette.hairline
        }
    }
}
