#include "platform/photos/index/sqlite/PhotoTables_p.h"

namespace lamina {

namespace {

FileKey keyAt(const Rows& rows, int device)
{
    return {static_cast<std::uint64_t>(rows.integer(device)), static_cast<std::uint64_t>(rows.integer(device + 1))};
}

} // namespace

PhotoRow readPhoto(const Rows& rows)
{
    PhotoRow row;
    row.record.id = rows.integer(0);
    row.record.folder = rows.integer(1);
    row.record.name = rows.text(2);
    row.record.key = keyAt(rows, 3);
    row.record.modified = rows.integer(5);
    row.record.bytes = rows.integer(6);
    row.record.width = rows.size(7);
    row.record.height = rows.size(8);
    row.record.date = rows.real(9);
    row.record.hasFacts = rows.integer(10) != 0;
    row.gone = rows.integer(11);
    return row;
}

FolderRow readFolder(const Rows& rows)
{
    FolderRow row;
    row.record.id = rows.integer(0);
    row.record.path = rows.text(1);
    row.record.key = keyAt(rows, 2);
    row.gone = rows.integer(4);
    return row;
}

} // namespace lamina
