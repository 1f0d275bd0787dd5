#pragma once

#include "platform/photos/index/PhotoStore_p.h"
#include "platform/photos/index/sqlite/Database_p.h"

#include <optional>
#include <string>

namespace lamina {

/// A file's place made sure of: it is there, and for the owner alone.
Outcome makePhotoFile(const std::string& path);

/// A connection as all are set up.
Database openPhotoFile(const std::string& path);

/// What a connection finds in its file.
enum class PhotoFileState {
    Ours,    ///< the tables of this version
    Empty,   ///< nothing yet
    Foreign, ///< tables of another version
    Damaged
};
PhotoFileState stateOf(Database& database);

/// Makes the tables and fills them where the file is empty; another process may do the same meanwhile, and be first.
bool fillPhotoFile(Database& database, const StoreContents& contents);

/// Empties a file that is damaged or of another version, and fills it anew. Another process that has done so leaves
/// nothing to be done; one that is at it makes this fail at once. The file stays the same one for those who have it
/// open.
Outcome remakePhotoFile(const std::string& path, const StoreContents& contents);

} // namespace lamina
