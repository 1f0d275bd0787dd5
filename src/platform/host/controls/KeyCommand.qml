import QtQuick
import Lamina

// A shortcut with the keys that the table gives its command.
Shortcut {
    required property string command
    sequences: KeyTable.sequences(command)
}
