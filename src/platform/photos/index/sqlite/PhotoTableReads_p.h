#pragma once

#include "platform/photos/index/PhotoRecords.h"
#include "platform/photos/index/PhotoStore_p.h"
#include "platform/photos/index/sqlite/Database_p.h"

#include <optional>
#include <span>
#include <vector>

namespace lamina {

/// What is read of the tables. After a failure of the connection the answers are worth nothing. For one thread at a
/// time.
class PhotoTableReads {
public:
    explicit PhotoTableReads(Database& database)
        : m_database(database)
    {
    }

    std::vector<FolderRecord> folders();
    std::vector<PhotoPlace> photos();
    std::vector<PhotoRecord> photosInFolder(FolderID folder);
    std::vector<PhotoRecord> records(std::span<const PhotoID> photos);
    std::optional<PhotoRecord> find(FileKey key);

private:
    Database& m_database;
    Statement m_folders{m_database, "SELECT * FROM folder WHERE gone = 0 ORDER BY id"};
    Statement m_places{m_database, "SELECT id, folder, date FROM photo WHERE gone = 0 ORDER BY date DESC"};
    Statement m_inFolder{m_database, "SELECT * FROM photo WHERE folder = ? AND gone = 0 ORDER BY id"};
    Statement m_withID{m_database, "SELECT * FROM photo WHERE id = ?"};
    Statement m_withKey{m_database, "SELECT * FROM photo WHERE inode = ? AND device = ?"};
};

/// All that can still be read of a connection's tables, its failures passed over: behind what is damaged it is gone on
/// from the other end.
StoreContents salvage(Database& database);

} // namespace lamina
