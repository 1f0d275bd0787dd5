import QtQuick
import Lamina

// Three ways on, one card each; over them, where there is any, work that was left.
AppScreen {
    id: home

    name: "Lamina"
    KeyCommand {
        command: "open"
        enabled: home.activeFocus
        onActivated: home.controller.openPhoto()
    }

    readonly property bool brief: measures.stacked && !tablet
    readonly property var cards: [
        { title: qsTranslate("Lamina", "Two photos"), photos: 2, turn: 4,
          line: brief ? qsTranslate("Lamina", "Eight frames") : qsTranslate("Lamina", "One cut, eight frames") },
        { title: qsTranslate("Lamina", "Three photos"), photos: 3, turn: -3,
          line: brief ? qsTranslate("Lamina", "Ten frames") : qsTranslate("Lamina", "A collage in ten frames") },
        { title: qsTranslate("Lamina", "Blend"), photos: 0, turn: 3,
          line: measures.stacked ? qsTranslate("Lamina", "One photo shines through the other")
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

    HomeLayout {
        id: measures
        screen: home
        headHeight: head.height
        keptHeight: kept.height
        titles: home.cards.map(card => card.title)
        wordsHeight: grid.highestWords
    }

    ScrollPage {
        id: scroller
        anchors.fill: parent
        contentHeight: Math.max(height, page.block + (home.upright ? measures.headTop + Tokens.space.l : 2 * Tokens.space.m))

        Item {
            id: page

            readonly property real block: measures.above + grid.height
            readonly property real start: home.upright && !home.tablet ? measures.headTop
                : Math.max(measures.headTop, Math.round((height - block) / 2) - (home.wide ? 20 : home.tablet ? 5 : 2))

            width: scroller.width
            height: scroller.contentHeight

            HomeHead {
                id: head
                x: measures.edge + (home.upright && !home.tablet ? 3 : 0)
                y: page.start
                width: measures.edge + measures.usable - x
                iconSize: measures.signSize
                spacing: home.wide || home.tablet ? Tokens.space.xl : home.upright ? 14 : Tokens.space.m
                role: measures.low ? Tokens.type.title : Tokens.type.display
                withLine: home.wide || home.tablet
                IconButton {
                    iconName: "more"
                    name: qsTranslate("Lamina", "Menu")
                    onClicked: home.controller.showMenu()
                }
            }

            Loader {
                id: kept
                x: measures.edge
                y: head.y + head.height + measures.headGap
                width: measures.usable
                height: item ? item.implicitHeight : 0
                active: home.controller.workOffered
                sourceComponent: KeptWorkCard {
                    controller: home.controller
                    low: home.lying
                }
                // Who has discarded it goes on with the cards.
                onActiveChanged: {
                    const next = active ? null : repeater.itemAt(0)
                    if (next)
                        next.focus = true
                }
            }

            Grid {
                id: grid
                x: measures.edge
                y: page.start + measures.above
                columns: measures.stacked ? 1 : 3
                spacing: measures.gap

                // Cards beside each other agree on the height of their words.
                readonly property real highestWords: {
                    let most = 0
                    for (let i = 0; i < repeater.count; ++i)
                        if (repeater.itemAt(i))
                            most = Math.max(most, repeater.itemAt(i).wordsHeight)
                    return most
                }

                Repeater {
                    id: repeater
                    model: home.cards.length
                    delegate: HomeCard {
                        required property int index
                        readonly property var card: home.cards[index]
                        layout: measures
                        width: measures.cardWidth
                        title: card.title
                        line: card.line
                        art: card.photos > 0 ? "" : "home_blend"
                        picture: home.controller.collageArt(card.photos)
                        turn: card.turn
                        focus: index === 0
                        onClicked: home.open(index)
                    }
                }
            }
        }
    }
}
