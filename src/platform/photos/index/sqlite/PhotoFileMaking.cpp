#include "platform/photos/index/sqlite/PhotoFileMaking_p.h"

#include "platform/base/Result.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileReading.h"
#include "platform/files/PrivateFolder.h"
#include "platform/photos/index/sqlite/PhotoTableRows_p.h"
#include "platform/photos/index/sqlite/PhotoTables_p.h"

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <thread>

namespace lamina {

namespace {

constexpr mode_t kOwnerOnly = 0600;
/// How long others may keep a file busy that is to be set up or emptied: only a damaged one is for longer.
constexpr int kSettingUpMilliseconds = 500;
constexpr auto kBetweenAttempts = std::chrono::milliseconds(5);

/// The write-ahead file is cut to this where it has grown; a loss of power may take the last changes, no more.
constexpr const char* kSettings = R"(
    PRAGMA journal_mode = WAL;
    PRAGMA synchronous = NORMAL;
    PRAGMA journal_size_limit = 1048576;
    PRAGMA cell_size_check = ON
)";

std::int64_t numberOf(Database& database, const char* sql)
{
    Statement statement(database, sql);
    Rows rows = statement.query();
    return rows.next() ? rows.integer(0) : 0;
}

/// Whether all pages are what they should be. It reads the whole file.
bool isWhole(Database& database)
{
    if (stateOf(database) != PhotoFileState::Ours)
        return false;
    Statement check(database, "PRAGMA quick_check(1)");
    Rows rows = check.query();
    return rows.next() && rows.text(0) == "ok";
}

/// All content goes, whatever it is, so that others who have the file open see an empty one.
bool emptyPhotoFile(const std::string& path)
{
    Database database(path, SQLITE_OPEN_READWRITE);
    stateOf(database); // reads how the file is shared, where that can be read
    database.forgive();
    sqlite3_busy_timeout(database.handle(), kSettingUpMilliseconds);
    sqlite3_db_config(database.handle(), SQLITE_DBCONFIG_RESET_DATABASE, 1, nullptr);
    const bool emptied = database.run("VACUUM");
    sqlite3_db_config(database.handle(), SQLITE_DBCONFIG_RESET_DATABASE, 0, nullptr);
    return emptied;
}

void removePhotoFile(const std::string& path)
{
    std::error_code ignored;
    for (const char* ending : {"", "-wal", "-shm", "-journal"})
        std::filesystem::remove(path + ending, ignored);
}

Outcome fillAnew(const std::string& path, const StoreContents& contents)
{
    if (Outcome made = makePhotoFile(path); !made)
        return made;
    Database database = openPhotoFile(path);
    fillPhotoFile(database, contents);
    return database.outcome();
}

void insertContents(Database& database, const StoreContents& contents)
{
    PhotoTableRows rows(database);
    for (const FolderRow& row : contents.folders)
        rows.insertFolder(row);
    for (const PhotoRow& row : contents.photos)
        rows.insertPhoto(row);
    Statement about(database, "INSERT INTO about VALUES(?, ?)");
    about.execute(contents.identity, contents.nextID);
}

} // namespace

Outcome makePhotoFile(const std::string& path)
{
    // One that is there is not opened: to close it would end the locks that this process has on it.
    const FileDescriptor made(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerOnly));
    if (made.get() >= 0)
        return success();
    if (errno != EEXIST)
        return Error{{}, writingFailure(errno)};
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && (status.st_mode & 07777) != kOwnerOnly)
        ::chmod(path.c_str(), kOwnerOnly);
    return success();
}

Database openPhotoFile(const std::string& path)
{
    Database database(path, SQLITE_OPEN_READWRITE);
    sqlite3_busy_timeout(database.handle(), kSettingUpMilliseconds);
    // Where two processes give a new file its first write-ahead file at once, SQLite fails for one of them and does not
    // wait: each reads, and waits for the other to stop reading.
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kSettingUpMilliseconds);
    while (!database.run(kSettings) && database.isHindered() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(kBetweenAttempts);
        database.forgive();
    }
    sqlite3_busy_timeout(database.handle(), Database::kPatienceMilliseconds);
    return database;
}

PhotoFileState stateOf(Database& database)
{
    const std::int64_t version = numberOf(database, "PRAGMA user_version");
    const std::int64_t tables = numberOf(database, "SELECT COUNT(*) FROM sqlite_schema");
    if (database.hasFailed())
        return PhotoFileState::Damaged;
    if (tables == 0)
        return PhotoFileState::Empty;
    if (version != kTablesVersion)
        return PhotoFileState::Foreign;
    const bool hasRow = numberOf(database, "SELECT COUNT(*) FROM about") == 1;
    return hasRow ? PhotoFileState::Ours : PhotoFileState::Damaged;
}

bool fillPhotoFile(Database& database, const StoreContents& contents)
{
    database.run("BEGIN IMMEDIATE");
    if (!database.hasFailed() && stateOf(database) == PhotoFileState::Empty) {
        database.run(kTables);
        insertContents(database, contents);
    }
    if (database.run("COMMIT"))
        return true;
    sqlite3_exec(database.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    return false;
}

Outcome remakePhotoFile(const std::string& path, const StoreContents& contents)
{
    // Nobody waits for it: whoever shows photos would.
    const auto lock = FolderLock::take(std::filesystem::path(path).parent_path().string());
    if (!lock)
        return Error{{}, "another process is mending it"};
    if (Database database = openPhotoFile(path); isWhole(database))
        return success();
    if (emptyPhotoFile(path)) {
        if (Outcome filled = fillAnew(path, contents))
            return filled;
    }
    removePhotoFile(path);
    return fillAnew(path, contents);
}

} // namespace lamina
