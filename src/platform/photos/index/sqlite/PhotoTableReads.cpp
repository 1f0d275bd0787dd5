#include "platform/photos/index/sqlite/PhotoTableReads_p.h"

#include "platform/photos/index/sqlite/PhotoTables_p.h"

#include <algorithm>
#include <cstdint>

namespace lamina {

namespace {

/// Ids above all that were ever seen, where it is not known which were given.
constexpr std::int64_t kIDGap = 1000000;

/// Dates come in order; photos of one date by folder, as the list of dates has them.
void orderEquals(std::vector<PhotoPlace>& places)
{
    for (auto first = places.begin(); first != places.end();) {
        const auto end =
            std::find_if(first, places.end(), [first](const PhotoPlace& place) { return place.date != first->date; });
        std::sort(first, end, isShownBefore);
        first = end;
    }
}

/// Rows of a table from its beginning to where it is damaged, then from its end to there.
template <class Row>
std::vector<Row> salvagedRows(Database& database, const char* upwards, const char* downwards, Row (*read)(const Rows&))
{
    std::vector<Row> found;
    const auto gather = [&](const char* sql, std::int64_t above) {
        database.forgive();
        Statement statement(database, sql);
        Rows rows = statement.query(above);
        while (rows.next())
            found.push_back(read(rows));
    };
    gather(upwards, 0);
    if (database.hasFailed())
        gather(downwards, found.empty() ? 0 : found.back().record.id);
    return found;
}

std::int64_t highestID(const StoreContents& contents)
{
    std::int64_t highest = 0;
    for (const FolderRow& row : contents.folders)
        highest = std::max(highest, row.record.id);
    for (const PhotoRow& row : contents.photos)
        highest = std::max(highest, row.record.id);
    return highest;
}

} // namespace

std::vector<FolderRecord> PhotoTableReads::folders()
{
    std::vector<FolderRecord> records;
    for (Rows rows = m_folders.query(); rows.next();)
        records.push_back(readFolder(rows).record);
    return records;
}

std::vector<PhotoPlace> PhotoTableReads::photos()
{
    std::vector<PhotoPlace> places;
    for (Rows rows = m_places.query(); rows.next();)
        places.push_back({rows.integer(0), rows.integer(1), rows.real(2)});
    orderEquals(places);
    return places;
}

std::vector<PhotoRecord> PhotoTableReads::photosInFolder(FolderID folder)
{
    std::vector<PhotoRecord> records;
    for (Rows rows = m_inFolder.query(folder); rows.next();)
        records.push_back(readPhoto(rows).record);
    return records;
}

std::vector<PhotoRecord> PhotoTableReads::records(std::span<const PhotoID> photos)
{
    std::vector<PhotoRecord> records;
    records.reserve(photos.size());
    m_database.run("BEGIN"); // all of one moment
    for (const PhotoID photo : photos) {
        Rows rows = m_withID.query(photo);
        records.push_back(rows.next() ? readPhoto(rows).record : PhotoRecord());
    }
    m_database.run("COMMIT");
    return records;
}

std::optional<PhotoRecord> PhotoTableReads::find(FileKey key)
{
    Rows rows = m_withKey.query(column(key, key.inode), column(key, key.device));
    return rows.next() ? std::optional(readPhoto(rows).record) : std::nullopt;
}

StoreContents salvage(Database& database)
{
    StoreContents contents;
    contents.folders = salvagedRows(database, "SELECT * FROM folder NOT INDEXED WHERE id > ? ORDER BY id",
                                    "SELECT * FROM folder NOT INDEXED WHERE id > ? ORDER BY id DESC", readFolder);
    contents.photos = salvagedRows(database, "SELECT * FROM photo NOT INDEXED WHERE id > ? ORDER BY id",
                                   "SELECT * FROM photo NOT INDEXED WHERE id > ? ORDER BY id DESC", readPhoto);
    contents.nextID = highestID(contents) + kIDGap;
    database.forgive();
    Statement about(database, "SELECT identity, next FROM about");
    if (Rows row = about.query(); row.next()) {
        contents.identity = row.text(0);
        contents.nextID = std::max(row.integer(1), highestID(contents) + 1);
    }
    database.forgive();
    return contents;
}

} // namespace lamina
