import QtQuick
import QtQuick.Templates as T
import Lamina

// Chooses a photo from a folder, where the desktop has no chooser of its own.
SheetPanel {
    id: sheet

    readonly property var folder: Host.folder
    signal chosen(string path)

    title: folder.title
    contentHeight: height * 0.7

    ListView {
        id: list
        anchors.fill: parent
        clip: true
        model: sheet.folder
        boundsBehavior: Flickable.StopAtBounds
        focus: true
        keyNavigationEnabled: true
        highlightMoveDuration: 0

        header: FolderRow {
            width: list.width
            height: sheet.folder.parentFolder === "" ? 0 : implicitHeight
            visible: sheet.folder.parentFolder !== ""
            name: qsTranslate("Lamina", "Up one folder")
            iconName: "ExpendLess"
            turned: true
            onClicked: sheet.folder.folder = sheet.folder.parentFolder
        }
        delegate: FolderRow {
            required property string path
            required property bool isFolder
            width: list.width
            iconName: isFolder ? "folder" : ""
            thumbnail: isFolder ? "" : path
            forward: isFolder
            onClicked: {
                if (isFolder)
                    sheet.folder.folder = path
                else
                    sheet.chosen(path)
            }
        }
        footer: StyledText {
            width: list.width
            leftPadding: Tokens.space.sheetMargin
            rightPadding: Tokens.space.sheetMargin
            topPadding: Tokens.space.m
            visible: text !== ""
            text: sheet.folder.loading ? "" : sheet.folder.error !== "" ? sheet.folder.error
                : list.count === 0 ? qsTranslate("Lamina", "No photos in this folder") : sheet.folder.note
            role: Tokens.type.caption
            color: Tokens.palette.textSecondary
        }
    }
}
