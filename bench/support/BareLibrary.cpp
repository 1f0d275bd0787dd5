#include "BareLibrary.h"

#include "support/BareDecode.h"
#include "support/ManyPhotos.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace lamina::bench {

namespace {

void readHead(const std::string& path)
{
    std::array<char, 4096> head;
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0 || ::pread(file, head.data(), head.size(), 0) < 0)
        std::abort();
    ::close(file);
}

struct CloseTable {
    void operator()(sqlite3* table) const { sqlite3_close(table); }
};
struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Table = std::unique_ptr<sqlite3, CloseTable>;
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

Table openTable(const std::string& path)
{
    sqlite3* table = nullptr;
    if (sqlite3_open(path.c_str(), &table) != SQLITE_OK)
        std::abort();
    sqlite3_exec(table, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL", nullptr, nullptr, nullptr);
    return Table(table);
}

Statement prepare(const Table& table, const char* sql)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(table.get(), sql, -1, &statement, nullptr) != SQLITE_OK)
        std::abort();
    return Statement(statement);
}

} // namespace

std::size_t walkBare(const std::string& folder)
{
    std::size_t files = 0;
    DIR* const listing = ::opendir(folder.c_str());
    if (listing == nullptr)
        std::abort();
    while (const dirent* entry = ::readdir(listing)) {
        if (entry->d_name[0] == '.')
            continue;
        const std::string path = folder + "/" + entry->d_name;
        if (entry->d_type == DT_DIR) {
            files += walkBare(path);
        } else {
            readHead(path);
            ++files;
        }
    }
    ::closedir(listing);
    return files;
}

void fillBareTable(const std::string& path)
{
    std::filesystem::remove(path);
    const Table table = openTable(path);
    sqlite3_exec(table.get(),
                 "CREATE TABLE photo(id INTEGER PRIMARY KEY, folder INTEGER, name TEXT, device INTEGER, inode INTEGER,"
                 " modified INTEGER, bytes INTEGER, width INTEGER, height INTEGER, date REAL); BEGIN",
                 nullptr, nullptr, nullptr);
    const Statement insert = prepare(table, "INSERT INTO photo VALUES(?,?,?,?,?,?,?,?,?,?)");
    for (int i = 0; i < kManyPhotos; ++i) {
        const std::string name = "IMG_" + std::to_string(10000 + i) + ".jpg";
        sqlite3_bind_int64(insert.get(), 1, i + 1);
        sqlite3_bind_int64(insert.get(), 2, i % kManyFolders);
        sqlite3_bind_text(insert.get(), 3, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
        sqlite3_bind_int64(insert.get(), 4, 65024);
        sqlite3_bind_int64(insert.get(), 5, 1'000'000 + i);
        sqlite3_bind_int64(insert.get(), 6, 1'700'000'000'000'000'000 + i);
        sqlite3_bind_int64(insert.get(), 7, 6000);
        sqlite3_bind_int64(insert.get(), 8, 96);
        sqlite3_bind_int64(insert.get(), 9, 72);
        sqlite3_bind_double(insert.get(), 10, 1.5e9 + i * 7919LL % kManyPhotos);
        if (sqlite3_step(insert.get()) != SQLITE_DONE)
            std::abort();
        sqlite3_reset(insert.get());
    }
    sqlite3_exec(table.get(), "COMMIT", nullptr, nullptr, nullptr);
}

std::size_t readBareTable(const std::string& path)
{
    const Table table = openTable(path);
    struct Row {
        std::int64_t id;
        std::int64_t folder;
        double date;
    };
    std::vector<Row> rows;
    const Statement all = prepare(table, "SELECT id, folder, date FROM photo ORDER BY date DESC, id");
    while (sqlite3_step(all.get()) == SQLITE_ROW)
        rows.push_back({sqlite3_column_int64(all.get(), 0), sqlite3_column_int64(all.get(), 1),
                        sqlite3_column_double(all.get(), 2)});
    const Statement one = prepare(table, "SELECT * FROM photo WHERE id = ?");
    for (std::size_t i = 0; i < 24; ++i) {
        sqlite3_bind_int64(one.get(), 1, rows.at(i).id);
        if (sqlite3_step(one.get()) != SQLITE_ROW)
            std::abort();
        sqlite3_reset(one.get());
    }
    return rows.size();
}

void decodeBare(const std::vector<std::string>& paths)
{
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        std::vector<JSAMPLE> pixels;
        for (std::size_t i = next++; i < paths.size(); i = next++)
            bareDecode(paths[i], pixels, 1);
    };
    std::thread other(work);
    work();
    other.join();
}

} // namespace lamina::bench
