#include "platform/photos/index/sqlite/PhotoFile_p.h"

#include "platform/photos/index/sqlite/PhotoFileMaking_p.h"
#include "platform/photos/index/sqlite/PhotoTables_p.h"

#include <utility>
#include <variant>

namespace lamina {

namespace {

/// A file that is damaged again and again lies on a bad disk, or in a quarrel with another version of this program.
constexpr std::uint64_t kMostMendings = 3;
/// Pages of the write-ahead file from which it is worth taking into the file.
constexpr int kPagesToCheckpoint = 1000;

/// Takes the write-ahead file into the file and empties it, unless somebody reads: then at another time.
int checkpoint(void*, sqlite3* connection, const char* database, int pages)
{
    if (pages >= kPagesToCheckpoint) {
        sqlite3_busy_timeout(connection, 0);
        sqlite3_wal_checkpoint_v2(connection, database, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
        sqlite3_busy_timeout(connection, Database::kPatienceMilliseconds);
    }
    return SQLITE_OK;
}

} // namespace

PhotoConnections::PhotoConnections(const std::string& path)
    : writing(openPhotoFile(path))
    , reading(openPhotoFile(path))
{
    writing.run("PRAGMA cache_size = -8192"); // rows come in any order of names and keys
    sqlite3_wal_hook(writing.handle(), checkpoint, nullptr);
}

Result<std::unique_ptr<PhotoStore>> PhotoFile::open(PhotoStoreFile file)
{
    if (Outcome made = makePhotoFile(file.path); !made)
        return made.error();
    std::unique_ptr<PhotoFile> opened(new PhotoFile(std::move(file)));
    if (Outcome connected = opened->connect(); !connected)
        return connected.error();
    return Result<std::unique_ptr<PhotoStore>>(std::move(opened));
}

Outcome PhotoFile::connect()
{
    m_connections = std::make_unique<PhotoConnections>(m_file.path);
    Database& database = m_connections->writing;
    PhotoFileState state = stateOf(database);
    if (state == PhotoFileState::Empty) {
        fillPhotoFile(database, {m_file.identity, 1, {}, {}});
        state = stateOf(database);
    }
    if (state != PhotoFileState::Ours) {
        if (database.hasFailed() && !database.isDamaged())
            return database.outcome();
        if (Outcome remade = remake(); !remade)
            return remade;
    }
    Statement about(m_connections->writing, "SELECT identity FROM about");
    if (Rows row = about.query(); row.next())
        m_file.identity = row.text(0);
    return m_connections->writing.outcome();
}

/// Makes the file anew with what can be read of it, and connects again. Both locks are held, or nobody knows of it yet.
Outcome PhotoFile::remake()
{
    Database& database = m_connections->reading;
    database.forgive();
    if (stateOf(database) == PhotoFileState::Foreign) {
        m_file.warn("the index of photos is of another version and is made anew");
        m_saved = {};
    } else {
        m_file.warn("the index of photos is damaged and is made anew");
        m_saved = salvage(database);
    }
    if (m_saved.identity.empty())
        m_saved.identity = m_file.identity;
    m_connections.reset();
    const Outcome remade = remakePhotoFile(m_file.path, m_saved);
    if (remade) {
        m_saved = {};
        m_connections = std::make_unique<PhotoConnections>(m_file.path);
    }
    return remade;
}

/// Success where it can be tried again. `mendingsSeen`: how many there had been when the damage was met; another thread
/// may have mended it since.
Outcome PhotoFile::mend(std::uint64_t mendingsSeen)
{
    const std::scoped_lock lock(m_writing, m_reading);
    if (m_mendings != mendingsSeen)
        return success();
    if (m_mendings == kMostMendings)
        return Error{{}, "it is damaged again and again"};
    ++m_mendings;
    return remake();
}

/// What `work` makes with the connections, of which `database` is the one that it uses, under `mutex`.
template <class Work>
auto PhotoFile::withMending(std::mutex& mutex, Database PhotoConnections::*database, const Work& work)
    -> Result<decltype(work(std::declval<PhotoConnections&>()))>
{
    for (;;) {
        std::uint64_t mendings = 0;
        {
            const std::lock_guard lock(mutex);
            mendings = m_mendings;
            if (!m_connections)
                return Error{{}, "it can't be mended"};
            Database& used = (*m_connections).*database;
            used.forgive();
            auto answer = work(*m_connections);
            if (!used.hasFailed())
                return answer;
            if (!used.isDamaged())
                return used.outcome().error();
        }
        if (Outcome mended = mend(mendings); !mended)
            return mended.error();
    }
}

template <class Read>
auto PhotoFile::read(const Read& read) -> Result<decltype(read(std::declval<PhotoTableReads&>()))>
{
    return withMending(m_reading, &PhotoConnections::reading,
                       [&read](PhotoConnections& connections) { return read(connections.reads); });
}

Result<std::vector<FolderRecord>> PhotoFile::folders()
{
    return read([](PhotoTableReads& reads) { return reads.folders(); });
}

Result<std::vector<PhotoPlace>> PhotoFile::photos()
{
    return read([](PhotoTableReads& reads) { return reads.photos(); });
}

Result<std::vector<PhotoRecord>> PhotoFile::photosInFolder(FolderID folder)
{
    return read([folder](PhotoTableReads& reads) { return reads.photosInFolder(folder); });
}

Result<std::vector<PhotoRecord>> PhotoFile::records(std::span<const PhotoID> photos)
{
    return read([photos](PhotoTableReads& reads) { return reads.records(photos); });
}

Result<std::optional<PhotoRecord>> PhotoFile::find(FileKey key)
{
    return read([key](PhotoTableReads& reads) { return reads.find(key); });
}

Outcome PhotoFile::write(const std::function<void(PhotoRows&)>& changes)
{
    return withMending(m_writing, &PhotoConnections::writing, [&changes](PhotoConnections& connections) {
        connections.rows.transact(changes);
        sqlite3_db_release_memory(connections.writing.handle());
        return std::monostate{};
    });
}

StoreContents PhotoFile::contents()
{
    const std::scoped_lock lock(m_writing, m_reading);
    return m_connections ? salvage(m_connections->reading) : m_saved;
}

} // namespace lamina
