import QtQuick
import Lamina

// What stands below the picture: the looks or the effects.
Grid {
    id: choice

    // A LiveViewController.
    required property var controller
    // One above the other, in a column.
    property bool stacked: false
    // Pictures alone.
    property bool slim: false
    // The one that is open; empty: none.
    property string current
    signal chosen(string panel)

    readonly property real share: slim ? Tokens.bars.selector : stacked ? width : (width - spacing) / 2

    columns: stacked ? 1 : 2
    spacing: Tokens.space.s
    leftPadding: slim ? Math.round((width - share) / 2) : 0

    PhotoButton {
        width: choice.share
        slim: choice.slim
        title: qsTranslate("Lamina", "Filter")
        caption: choice.controller.lookName
        picture: choice.controller.lookPicture
        selected: choice.current === "filter"
        onClicked: choice.chosen("filter")
    }
    PhotoButton {
        readonly property int changed: choice.controller.changedSliders
        width: choice.share
        slim: choice.slim
        title: qsTranslate("Lamina", "Effects")
        caption: changed === 0 ? qsTranslate("Lamina", "None changed") : qsTranslate("Lamina", "%1 changed").arg(changed)
        iconName: selected ? "Fx1" : "Fx"
        selected: choice.current === "effects"
        onClicked: choice.chosen("effects")
    }
}
