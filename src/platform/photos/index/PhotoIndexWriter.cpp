#include "platform/photos/index/PhotoIndex.h"
#include "platform/photos/index/PhotoRecords.h"
#include "platform/photos/index/PhotoStore_p.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

// Which row a file belongs to. Rows are found by what the file system knows a file by and by its name; each of the two
// belongs to one row, so that a row which takes one over makes the other let go of it first.

namespace lamina {

namespace {

/// A name that no file can have, for a row whose name another file has taken. Its own may be back under another one.
std::string displacedName(std::int64_t id)
{
    return "/" + std::to_string(id);
}

/// File systems give the key of a removed file to the next new one; a file that was only moved has its content still.
bool isSameFile(const PhotoRecord& row, const PhotoRecord& file)
{
    const bool sameName = row.folder == file.folder && row.name == file.name;
    const bool sameContent = row.modified == file.modified && row.bytes == file.bytes;
    return sameName || sameContent;
}

/// `owner`: whose the key is from now on.
void letGoOfKey(PhotoRows& rows, std::optional<PhotoRow> row, PhotoID owner)
{
    if (!row || row->record.id == owner)
        return;
    row->record.key = {};
    rows.updatePhoto(*row);
}

/// The same with its name, without which it is gone.
void letGoOfName(PhotoRows& rows, std::optional<PhotoRow> row, PhotoID owner, std::int64_t now)
{
    if (!row || row->record.id == owner)
        return;
    row->record.name = displacedName(row->record.id);
    row->gone = row->gone == 0 ? now : row->gone;
    rows.updatePhoto(*row);
}

} // namespace

PhotoID PhotoIndex::Writer::putPhoto(const PhotoRecord& record)
{
    PhotoRow row{record, 0};
    if (!std::isfinite(record.date))
        row.record.date = 0;
    if (row.record.id != 0 && m_rows.renewPhoto(row))
        return row.record.id;
    if (const PhotoID added = m_rows.insertPhoto(row); added != 0)
        return added;

    const std::optional<PhotoRow> byKey = m_rows.photoWithKey(record.key);
    const std::optional<PhotoRow> byName = m_rows.photoNamed(record.folder, record.name);
    const bool moved = byKey && isSameFile(byKey->record, record);
    row.record.id = moved ? byKey->record.id : byName ? byName->record.id : 0;
    letGoOfKey(m_rows, byKey, row.record.id);
    letGoOfName(m_rows, byName, row.record.id, m_now);
    if (row.record.id != 0) {
        if (!m_rows.renewPhoto(row))
            m_rows.updatePhoto(row);
        return row.record.id;
    }
    row.record.id = record.id;
    if (const PhotoID added = m_rows.insertPhoto(row); added != 0)
        return added;
    row.record.id = 0; // the id is another photo's
    return m_rows.insertPhoto(row);
}

PhotoID PhotoIndex::Writer::putNewPhoto(const PhotoRecord& record)
{
    letGoOfKey(m_rows, m_rows.photoWithKey(record.key), record.id);
    letGoOfName(m_rows, m_rows.photoNamed(record.folder, record.name), record.id, m_now);
    return putPhoto(record);
}

void PhotoIndex::Writer::markGone(std::span<const PhotoID> photos)
{
    for (const PhotoID photo : photos)
        m_rows.markPhotoGone(photo, m_now);
}

FolderID PhotoIndex::Writer::putFolder(const FolderRecord& record)
{
    FolderRow row{record, 0};
    std::optional<FolderRow> byKey = m_rows.folderWithKey(record.key);
    if (byKey && byKey->gone != 0 && byKey->record.path != record.path) {
        // Its key is given anew: to a folder made since, or to one of the next card that is put in.
        byKey->record.key = {};
        m_rows.updateFolder(*byKey);
        byKey.reset();
    }
    std::optional<FolderRow> byPath = m_rows.folderAt(record.path);
    if (byKey && byPath && byKey->record.id != byPath->record.id) {
        byPath->record.path = displacedName(byPath->record.id);
        m_rows.updateFolder(*byPath);
        m_rows.markFolderGone(byPath->record.id, m_now);
    }
    if (byKey || byPath) {
        row.record.id = byKey ? byKey->record.id : byPath->record.id;
        m_rows.updateFolder(row);
        return row.record.id;
    }
    row.record.id = 0;
    return m_rows.insertFolder(row);
}

void PhotoIndex::Writer::removeFolder(FolderID folder)
{
    m_rows.markFolderGone(folder, m_now);
}

} // namespace lamina
