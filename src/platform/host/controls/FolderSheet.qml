import QtQuick
import Lamina

// Chooses a photo or a movie from a folder, or a folder for a file, where the desktop has no chooser of its own.
SheetPanel {
    id: sheet

    readonly property var folder: Host.folder
    // A folder is chosen, not a photo in it.
    property bool placing: false
    property string placingText: qsTranslate("Lamina", "Save here")
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
        text: sheet.placingText
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

    RowList {
        id: list

        anchors.fill: parent
        anchors.topMargin: places.height
        clip: true
        model: sheet.folder
        name: sheet.title
        rowForTyping: (text, current) => sheet.folder.rowForTyping(text, current)

        delegate: FolderRow {
            required property string path
            required property bool isFolder
            required property bool isParent
            required property int index
            width: list.width
            listed: true
            focus: ListView.isCurrentItem
            focusPolicy: Qt.ClickFocus
            iconName: isParent ? "ExpendLess" : isFolder ? "folder" : sheet.folder.movies ? "movie" : ""
            turned: isParent
            thumbnail: isFolder || sheet.folder.movies ? "" : path
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
                : sheet.folder.empty ? sheet.folder.movies ? qsTranslate("Lamina", "No movies in this folder")
                : qsTranslate("Lamina", "No photos in this folder") : sheet.folder.note
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
            Accessible.name: text
        }

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
