#pragma once

#include "platform/photos/index/PhotoRecords.h"
#include "platform/photos/index/PhotoStore_p.h"
#include "platform/photos/index/sqlite/Database_p.h"

#include <cstdint>
#include <optional>

namespace lamina {

// The tables' form, and how a row of them is written and read.

/// Written as SQLite's `user_version`; a file of another one is made anew.
inline constexpr int kTablesVersion = 1;

inline constexpr const char* kTables = R"(
    PRAGMA user_version = 1;
    CREATE TABLE about(identity TEXT NOT NULL, next INTEGER NOT NULL);
    CREATE TABLE folder(id INTEGER PRIMARY KEY, path TEXT NOT NULL UNIQUE, device INTEGER, inode INTEGER,
                        gone INTEGER NOT NULL, UNIQUE(inode, device));
    CREATE TABLE photo(id INTEGER PRIMARY KEY, folder INTEGER NOT NULL, name TEXT NOT NULL, device INTEGER,
                       inode INTEGER, modified INTEGER NOT NULL, bytes INTEGER NOT NULL, width INTEGER NOT NULL,
                       height INTEGER NOT NULL, date REAL NOT NULL, facts INTEGER NOT NULL, gone INTEGER NOT NULL,
                       UNIQUE(folder, name), UNIQUE(inode, device));
    CREATE INDEX shown ON photo(date DESC, folder) WHERE gone = 0;
    CREATE INDEX gone ON photo(gone) WHERE gone > 0;
)";

/// The row on which `rows` stands, selected with all columns in the tables' order.
PhotoRow readPhoto(const Rows& rows);
FolderRow readFolder(const Rows& rows);

/// A key as the tables have it: columns of one that is not known are NULL.
inline std::optional<std::int64_t> column(FileKey key, std::uint64_t value)
{
    return key.isKnown() ? std::optional(static_cast<std::int64_t>(value)) : std::nullopt;
}

} // namespace lamina
