#include "platform/photos/index/sqlite/PhotoTableRows_p.h"

#include "platform/photos/index/PhotoRecords.h"
#include "platform/photos/index/sqlite/PhotoTables_p.h"

#include <algorithm>

namespace lamina {

namespace {

std::optional<PhotoRow> firstPhoto(Rows rows)
{
    return rows.next() ? std::optional(readPhoto(rows)) : std::nullopt;
}

std::optional<FolderRow> firstFolder(Rows rows)
{
    return rows.next() ? std::optional(readFolder(rows)) : std::nullopt;
}

bool runPhoto(Statement& statement, const PhotoRow& row, PhotoID id)
{
    const PhotoRecord& photo = row.record;
    return statement.execute(id, photo.folder, photo.name, column(photo.key, photo.key.device),
                             column(photo.key, photo.key.inode), photo.modified, photo.bytes, std::int64_t{photo.width},
                             std::int64_t{photo.height}, photo.date, std::int64_t{photo.hasFacts}, row.gone);
}

bool runFolder(Statement& statement, const FolderRow& row, FolderID id)
{
    const FolderRecord& folder = row.record;
    return statement.execute(id, folder.path, column(folder.key, folder.key.device),
                             column(folder.key, folder.key.inode), row.gone);
}

} // namespace

void PhotoTableRows::transact(const std::function<void(PhotoRows&)>& changes)
{
    if (!m_database.run("BEGIN IMMEDIATE"))
        return;
    if (Rows row = m_readNext.query(); row.next())
        m_next = row.integer(0);
    else
        m_database.note(SQLITE_CORRUPT);
    const std::int64_t before = m_next;
    if (!m_database.hasFailed())
        changes(*this);
    if (m_next != before)
        m_writeNext.execute(m_next);
    if (!m_database.run("COMMIT"))
        sqlite3_exec(m_database.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

/// What an insertion has come to.
std::int64_t PhotoTableRows::added(std::int64_t id)
{
    if (m_database.hasFailed() || sqlite3_changes64(m_database.handle()) == 0)
        return 0;
    m_next = std::max(m_next, id + 1);
    return id;
}

std::optional<PhotoRow> PhotoTableRows::photoWithKey(FileKey key)
{
    return firstPhoto(m_photoWithKey.query(column(key, key.inode), column(key, key.device)));
}

std::optional<PhotoRow> PhotoTableRows::photoNamed(FolderID folder, const std::string& name)
{
    return firstPhoto(m_photoNamed.query(folder, name));
}

PhotoID PhotoTableRows::insertPhoto(const PhotoRow& row)
{
    const PhotoID id = row.record.id != 0 ? row.record.id : m_next;
    return runPhoto(m_insertPhoto, row, id) ? added(id) : 0;
}

bool PhotoTableRows::renewPhoto(const PhotoRow& row)
{
    return runPhoto(m_renewPhoto, row, row.record.id) && sqlite3_changes64(m_database.handle()) != 0;
}

void PhotoTableRows::updatePhoto(const PhotoRow& row)
{
    runPhoto(m_updatePhoto, row, row.record.id);
}

void PhotoTableRows::markPhotoGone(PhotoID photo, std::int64_t since)
{
    m_markPhotoGone.execute(since, photo);
}

void PhotoTableRows::markFolderGone(FolderID folder, std::int64_t since)
{
    m_markFolderGone.execute(since, folder);
    m_markInFolderGone.execute(since, folder);
}

std::optional<FolderRow> PhotoTableRows::folderWithKey(FileKey key)
{
    return firstFolder(m_folderWithKey.query(column(key, key.inode), column(key, key.device)));
}

std::optional<FolderRow> PhotoTableRows::folderAt(const std::string& path)
{
    return firstFolder(m_folderAt.query(path));
}

FolderID PhotoTableRows::insertFolder(const FolderRow& row)
{
    const FolderID id = row.record.id != 0 ? row.record.id : m_next;
    return runFolder(m_insertFolder, row, id) ? added(id) : 0;
}

void PhotoTableRows::updateFolder(const FolderRow& row)
{
    runFolder(m_updateFolder, row, row.record.id);
}

void PhotoTableRows::forget(std::int64_t goneBefore)
{
    m_forgetPhotos.execute(goneBefore);
    m_forgetFolders.execute(goneBefore);
}

} // namespace lamina
