import QtQuick
import QtQuick.Templates as T
import Lamina

// Chooses a photo from a folder, or a folder for a file, where the desktop has no chooser of its own.
SheetPanel {
    id: sheet

    readonly property var folder: Host.folder
    // A folder is chosen, not a photo in it.
    property bool placing: false
    signal chosen(string path)
    signal placed(string folder)

    function open(row) {
        if (row.isFolder)
            folder.folder = row.path
        else if (!placing)
            chosen(row.path)
    }

    title: folder.title
    contentHeight: height * (placing ? 0.6 : 0.7)
    footHeight: placing ? here.height : 0
    foot: LaminaButton {
        id: here
        visible: sheet.placing
        width: parent.width
        text: qsTranslate("Lamina", "Save here")
        onClicked: sheet.placed(sheet.folder.folder)
    }

    PlaceRow {
        id: places
        visible: sheet.folder.places.length > 1
        width: parent.width
        height: visible ? implicitHeight : 0
        places: sheet.folder.places
        current: sheet.folder.folder
        onChosen: path => sheet.folder.folder = path
    }

    ListView {
        id: list

        readonly property real rowHeight: currentItem ? currentItem.height : Tokens.touch.listRow
        readonly property int pageRows: Math.max(1, Math.floor(height / rowHeight) - 1)

        // Another row for those who come by keys: always whole in sight, and nothing is current in an empty list.
        function goTo(row) {
            currentIndex = Math.max(0, Math.min(row, count - 1))
            positionViewAtIndex(currentIndex, ListView.Contain)
        }

        anchors.fill: parent
        anchors.topMargin: places.height
        clip: true
        model: sheet.folder
        boundsBehavior: Flickable.StopAtBounds
        focus: true
        activeFocusOnTab: true
        keyNavigationEnabled: false
        highlightMoveDuration: 0
        Accessible.role: Accessible.List
        Accessible.name: sheet.title
        onCountChanged: if (currentIndex < 0) currentIndex = 0

        Keys.onPressed: event => {
            const pressed = command => KeyTable.find(command, event.key, event.modifiers)
            const places = { row: [currentIndex - 1, currentIndex + 1],
                             page: [currentIndex - pageRows, currentIndex + pageRows],
                             ends: [0, count - 1] }
            const command = Object.keys(places).find(name => places[name][pressed(name)] !== undefined)
            const found = command === undefined && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier))
                ? sheet.folder.rowForTyping(event.text, currentIndex) : -1
            event.accepted = command !== undefined || found >= 0
            if (event.accepted)
                goTo(command !== undefined ? places[command][pressed(command)] : found)
        }

        delegate: FolderRow {
            required property string path
            required property bool isFolder
            required property bool isParent
            required property int index
            width: list.width
            listed: true
            focus: ListView.isCurrentItem
            focusPolicy: Qt.ClickFocus
            iconName: isParent ? "ExpendLess" : isFolder ? "folder" : ""
            turned: isParent
            thumbnail: isFolder ? "" : path
            forward: isFolder && !isParent
            opacity: isFolder || !sheet.placing ? 1 : Tokens.opacity.disabled
            onClicked: {
                list.currentIndex = index
                sheet.open({ isFolder: isFolder, path: path })
            }
        }
        footer: StyledText {
            width: list.width
            leftPadding: Tokens.space.sheetMargin
            rightPadding: Tokens.space.sheetMargin
            topPadding: Tokens.space.m
            visible: text !== ""
            text: sheet.folder.loading ? "" : sheet.folder.error !== "" ? sheet.folder.error
                : sheet.folder.empty ? qsTranslate("Lamina", "No photos in this folder") : sheet.folder.note
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            Accessible.name: text
        }
        T.ScrollBar.vertical: ThinScrollBar { }

        Connections {
            target: sheet.folder
            // Another folder begins at its top.
            function onFolderChanged() {
                list.currentIndex = 0
                list.positionViewAtBeginning()
            }
        }
    }
}
