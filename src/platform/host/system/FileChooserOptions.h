#pragma once

#include <QVariantMap>

#include <string>

namespace lamina {

/// What a file chooser is asked for: one picture file, one movie's, or one folder. All texts are to be shown to the
/// user as they are; paths are bytes.
struct FileChooserQuestion {
    std::string parentWindow; ///< over which it stands, from `portalWindowIdentifier`; may be empty
    std::string title;
    std::string acceptLabel; ///< of the button that takes the file; empty: what the desktop calls it
    std::string
        folder; ///< in which it starts; empty: the samples while the user has no pictures, else where the desktop likes
    bool choosesFolder = false;
    bool choosesMovie = false;
};

/// What it is asked for where a file is to be saved.
struct FileSaveQuestion {
    std::string parentWindow; ///< as above
    std::string title;
    std::string acceptLabel;
    std::string folder; ///< in which it starts; empty: where the desktop likes
    std::string name;   ///< of the file, to begin with
};

/// The question as options of the portal's OpenFile call (a{sv}), the title and the parent window apart.
QVariantMap fileChooserOptions(const FileChooserQuestion& question);
/// The same for its SaveFile call.
QVariantMap fileSaveOptions(const FileSaveQuestion& question);

} // namespace lamina
