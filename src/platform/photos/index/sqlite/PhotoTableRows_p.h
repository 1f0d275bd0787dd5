#pragma once

#include "platform/photos/index/PhotoStore_p.h"
#include "platform/photos/index/sqlite/Database_p.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace lamina {

/// The tables of a connection that writes, in transactions. For one thread at a time.
class PhotoTableRows final : public PhotoRows {
public:
    explicit PhotoTableRows(Database& database)
        : m_database(database)
    {
    }

    /// Runs `changes` in a transaction that other processes wait for, and ends it: all is done, or nothing is, and the
    /// connection has failed.
    void transact(const std::function<void(PhotoRows&)>& changes);
    /// The next id, as the last transaction left it.
    std::int64_t lastNextID() const { return m_next; }

    std::int64_t nextID() override { return m_next++; }
    std::optional<PhotoRow> photoWithKey(FileKey key) override;
    std::optional<PhotoRow> photoNamed(FolderID folder, const std::string& name) override;
    PhotoID insertPhoto(const PhotoRow& row) override;
    bool renewPhoto(const PhotoRow& row) override;
    void updatePhoto(const PhotoRow& row) override;
    void markPhotoGone(PhotoID photo, std::int64_t since) override;
    void markFolderGone(FolderID folder, std::int64_t since) override;
    std::optional<FolderRow> folderWithKey(FileKey key) override;
    std::optional<FolderRow> folderAt(const std::string& path) override;
    FolderID insertFolder(const FolderRow& row) override;
    void updateFolder(const FolderRow& row) override;
    void forget(std::int64_t goneBefore) override;

private:
    std::int64_t added(std::int64_t id);

    Database& m_database;
    std::int64_t m_next = 1;
    Statement m_readNext{m_database, "SELECT next FROM about"};
    Statement m_writeNext{m_database, "UPDATE about SET next = ?"};
    Statement m_photoWithKey{m_database, "SELECT * FROM photo WHERE inode = ? AND device = ?"};
    Statement m_photoNamed{m_database, "SELECT * FROM photo WHERE folder = ? AND name = ?"};
    Statement m_insertPhoto{m_database,
                            "INSERT INTO photo VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT DO NOTHING"};
    Statement m_renewPhoto{m_database, "UPDATE photo SET (modified, bytes, width, height, date, facts, gone) = "
                                       "(?6, ?7, ?8, ?9, ?10, ?11, ?12) "
                                       "WHERE id = ?1 AND folder = ?2 AND name = ?3 AND device IS ?4 AND inode IS ?5"};
    Statement m_updatePhoto{m_database,
                            "UPDATE photo SET (folder, name, device, inode, modified, bytes, width, height, date, "
                            "facts, gone) = (?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12) WHERE id = ?1"};
    Statement m_markPhotoGone{m_database, "UPDATE photo SET gone = ? WHERE id = ? AND gone = 0"};
    Statement m_markFolderGone{m_database, "UPDATE folder SET gone = ? WHERE id = ? AND gone = 0"};
    Statement m_markInFolderGone{m_database, "UPDATE photo SET gone = ? WHERE folder = ? AND gone = 0"};
    Statement m_folderWithKey{m_database, "SELECT * FROM folder WHERE inode = ? AND device = ?"};
    Statement m_folderAt{m_database, "SELECT * FROM folder WHERE path = ?"};
    Statement m_insertFolder{m_database, "INSERT INTO folder VALUES(?, ?, ?, ?, ?) ON CONFLICT DO NOTHING"};
    Statement m_updateFolder{m_database, "UPDATE folder SET (path, device, inode, gone) = (?2, ?3, ?4, ?5) "
                                         "WHERE id = ?1"};
    Statement m_forgetPhotos{m_database, "DELETE FROM photo WHERE gone > 0 AND gone < ?"};
    Statement m_forgetFolders{m_database, "DELETE FROM folder WHERE gone > 0 AND gone < ? AND "
                                          "NOT EXISTS(SELECT 1 FROM photo WHERE photo.folder = folder.id)"};
};

} // namespace lamina
