#pragma once

#include "platform/files/FileReading.h"
#include "platform/files/WrittenFolders_p.h"

#include <string>

namespace lamina {

/// Where a file is to be written.
struct FilePlace {
    OpenFolder folder; ///< nothing where there is no name to be taken: the file is written through
    std::string name;  ///< in the folder
    /// What stands there: a regular file, a pipe or a device, open for writing; none for a new file.
    FileDescriptor existing{-1};

    bool isWrittenThrough() const { return folder == nullptr; }
    bool exists() const { return existing.get() >= 0; }
};

/// Finds the place that a path means. Symbolic links are followed by the system, in its own way and by its own rules
/// about the folders of others, also those that lead to a file that is to be made: whoever may not open a file by this
/// path gets the number of that error, and nothing changes. `place.folder` is the very folder in which the file's own
/// name stands, however paths change meanwhile. A pipe is waited for until somebody reads it.
///
/// A file that has no name any more, though a path leads to it (/proc/self/fd), is written through.
int findPlace(const std::string& path, FilePlace& place);

/// The place of the path's own last name, whatever bears it: nothing is followed there, and nothing opened.
int findNamedPlace(const std::string& path, FilePlace& place);

} // namespace lamina
