import QtQuick
import Lamina

// Three ways on, one card each.
AppScreen {
    id: home

    name: "Lamina"
    KeyCommand {
        command: "open"
        enabled: home.activeFocus
        onActivated: home.controller.openPhoto()
    }

    readonly property real margin: wide ? Math.max(Tokens.space.xxl, Math.min(88, (width - 900) / 4 + Tokens.space.xxl)) : Tokens.space.l
    readonly property real gap: wide ? 22 : lying ? Tokens.space.m : 14
    readonly property real usable: Math.min(width - 2 * margin, upright ? 560 : 1240)
    readonly property real edge: Math.round((width - usable) / 2)
    // From the head to the cards.
    readonly property real headGap: wide ? 53 : lying ? Tokens.space.m : 32

    readonly property var cards: [
        { title: qsTranslate("Lamina", "Two photos"), art: "home_two", turn: 4, collage: true,
          line: upright ? qsTranslate("Lamina", "Eight frames") : qsTranslate("Lamina", "One cut, eight frames") },
        { title: qsTranslate("Lamina", "Three photos"), art: "home_three", turn: -3, collage: true,
          line: upright ? qsTranslate("Lamina", "Ten frames") : qsTranslate("Lamina", "A collage in ten frames") },
        { title: qsTranslate("Lamina", "Blend"), art: "home_blend", turn: 3, collage: false,
          line: upright ? qsTranslate("Lamina", "One photo shines through the other")
                        : qsTranslate("Lamina", "Lay one photo over another") }
    ]

    function open(index) {
        if (index === 0)
            controller.twoPhotoCollage()
        else if (index === 1)
            controller.threePhotoCollage()
        else
            controller.BlendPhoto()
    }

    ScrollPage {
        id: scroller
        anchors.fill: parent
        contentHeight: Math.max(height, page.implicitHeight)

        Item {
            id: page

            readonly property real free: scroller.height - head.height - home.headGap
            readonly property real cardHeight: home.upright ? Math.max(140, Math.min(220, (free - 66 - 2 * home.gap) / 3))
                                             : home.lying ? Math.max(200, Math.min(320, free - 28))
                                             : Math.max(240, Math.min(442 * Math.max(1, Theme.textScale), free - 120))
            readonly property real block: head.height + home.headGap + grid.height

            width: scroller.width
            height: scroller.contentHeight
            implicitHeight: block + (home.upright ? 28 + Tokens.space.l : 28)

            Row {
                id: head
                // The sign's tile keeps a little room in its own square.
                x: home.edge + (home.upright ? 3 : 0)
                y: home.upright ? 28 : Math.max(Tokens.space.m, Math.round((page.height - page.block) / 2) - (home.wide ? 20 : 2))
                spacing: home.wide ? Tokens.space.xl : home.lying ? Tokens.space.m : 14
                Icon {
                    name: "app-scalable"
                    size: home.wide ? 72 : home.lying ? 38 : 48
                    anchors.verticalCenter: parent.verticalCenter
                }
                Column {
                    anchors.verticalCenter: parent.verticalCenter
                    StyledText {
                        text: "Lamina"
                        role: home.lying ? Tokens.type.title : Tokens.type.display
                        Accessible.role: Accessible.Heading
                        Accessible.name: text
                    }
                    StyledText {
                        visible: home.wide
                        text: qsTranslate("Lamina", "Put photos together.")
                        color: Tokens.palette.textSecondary
                    }
                }
            }

            IconButton {
                x: home.edge + home.usable - width
                y: head.y + (head.height - height) / 2
                iconName: "more"
                name: qsTranslate("Lamina", "Menu")
                onClicked: home.controller.showMenu()
            }

            Grid {
                id: grid
                x: home.edge
                y: head.y + head.height + home.headGap
                columns: home.upright ? 1 : 3
                spacing: home.gap

                function agree(choose, property) {
                    const values = []
                    for (let i = 0; i < repeater.count; ++i)
                        if (repeater.itemAt(i))
                            values.push(repeater.itemAt(i)[property])
                    return values.length > 0 ? choose(...values) : 0
                }
                readonly property real printSide: agree(Math.min, "printRoom")
                readonly property real highestWords: home.upright ? 0 : agree(Math.max, "wordsHeight")

                Repeater {
                    id: repeater
                    model: home.cards
                    delegate: HomeCard {
                        required property var modelData
                        required property int index
                        width: home.upright ? home.usable : (home.usable - 2 * home.gap) / 3
                        height: implicitHeight
                        printSide: grid.printSide
                        highestWords: Math.max(wordsHeight, grid.highestWords)
                        leastHeight: page.cardHeight
                        title: modelData.title
                        line: modelData.line
                        art: modelData.art
                        turn: modelData.turn
                        tall: !home.upright
                        soon: modelData.collage && !home.controller.collageAvailable
                        focus: index === (home.controller.collageAvailable ? 0 : 2)
                        onClicked: home.open(index)
                    }
                }
            }
        }
    }
}
