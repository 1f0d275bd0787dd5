#include "platform/photos/LibraryScanner_p.h"

#include <algorithm>
#include <optional>
#include <utility>

// The files of a round: which of them are known, which have moved, and which are to be read.

namespace lamina {

namespace {

/// Records that are written in one transaction.
constexpr std::size_t kMostWrites = 500;

bool hasContentOf(const PhotoRecord& record, const ListedFile& file)
{
    return record.modified == file.modified && record.bytes == file.bytes;
}

std::uint64_t stampOf(const PhotoRecord& record)
{
    const auto modified = static_cast<std::uint64_t>(record.modified);
    const auto bytes = static_cast<std::uint64_t>(record.bytes);
    return (std::hash<std::string>()(record.name) ^ modified * 31 ^ bytes * 1000003) | 1;
}

} // namespace

/// `names`: only these were looked for; null: all that there are.
void LibraryScanner::compare(TreeFolder& folder, const std::vector<ListedFile>& files,
                             const std::set<std::string>* names)
{
    const std::vector<PhotoRecord> records = m_index->photosInFolder(folder.id);
    removeStale(folder, records);
    Rows rows;
    for (const PhotoRecord& record : records) {
        if (!names || names->contains(record.name))
            rows.emplace(record.name, &record);
    }
    forgetReadings(folder, files, names);
    for (const ListedFile& file : files) {
        const auto row = rows.find(file.name);
        if (!folder.writing.contains(file.name))
            takeFile(folder, file, row == rows.end() ? nullptr : row->second);
        if (row != rows.end())
            rows.erase(row);
    }
    for (const auto& [name, row] : rows)
        m_missing.insert(row->id);
}

/// Another process that shares the index may have been first to find that photos are gone.
void LibraryScanner::removeStale(const TreeFolder& folder, const std::vector<PhotoRecord>& rows)
{
    std::unordered_set<PhotoID> there;
    for (const PhotoRecord& row : rows) {
        const std::optional<PhotoPlace> place = m_places.find(row.id);
        if (place && place->folder == folder.id)
            there.insert(row.id);
    }
    if (there.size() < m_places.countIn(folder.id))
        m_places.removeFrom({folder.id}, there);
}

/// `row`: what the index has under this name; null: nothing.
void LibraryScanner::takeFile(TreeFolder& folder, const ListedFile& file, const PhotoRecord* row)
{
    const auto reading = m_reading.find(pathIn(folder.path, file.name));
    if (reading != m_reading.end() && reading->second.key == file.key && reading->second.modified == file.modified &&
        reading->second.bytes == file.bytes)
        return;
    if (row && row->key == file.key && hasContentOf(*row, file) && row->hasFacts) {
        m_places.put({row->id, folder.id, row->date}, stampOf(*row), false);
        m_missing.erase(row->id);
    } else if (row && row->key == file.key) {
        read(folder, file, row->id);
    } else if (!takeKnown(folder, file) && !repeatsReading(folder, file)) {
        if (row && hasContentOf(*row, file) && row->hasFacts)
            takeOtherKey(folder, file, *row);
        else
            read(folder, file, row ? row->id : 0);
    } else if (row) {
        m_missing.insert(row->id);
    }
}

/// The file is what it was, under another key: devices are numbered anew, and on cards files too with each mount.
void LibraryScanner::takeOtherKey(const TreeFolder& folder, const ListedFile& file, const PhotoRecord& row)
{
    forgetReading(pathIn(folder.path, file.name));
    m_missing.erase(row.id);
    m_writes.push_back({row, false});
    m_writes.back().record.key = file.key;
    if (m_writes.size() >= kMostWrites)
        flush();
}

/// Whether the file is another one's second name, or has come here from elsewhere with all that is known of it.
bool LibraryScanner::takeKnown(const TreeFolder& folder, const ListedFile& file)
{
    if (m_isNewIndex && !file.mayRepeat)
        return false;
    if (file.mayRepeat)
        flush();
    std::optional<PhotoRecord> other = m_index->find(file.key);
    if (!other)
        return false;
    const bool isHere = other->folder == folder.id && other->name == file.name;
    const Whereabouts where = isHere ? Whereabouts::Gone : whereabouts(*other);
    if (where == Whereabouts::File || (where == Whereabouts::Link && file.isLink)) {
        m_doubles[file.key].insert(pathIn(folder.path, file.name));
        // It was written under this name: nobody tells of the other one.
        if (!hasContentOf(*other, file))
            touch(pathIn(m_tree->withID(other->folder)->path, other->name));
        return true;
    }
    if (!hasContentOf(*other, file) || !other->hasFacts)
        return false;
    if (!isHere && where == Whereabouts::Link)
        m_doubles[file.key].insert(pathIn(m_tree->withID(other->folder)->path, other->name));
    other->folder = folder.id;
    other->name = file.name;
    m_missing.erase(other->id);
    m_writes.push_back({std::move(*other), true});
    if (m_writes.size() >= kMostWrites)
        flush();
    return true;
}

/// The same of a file that is being read under another name.
bool LibraryScanner::repeatsReading(const TreeFolder& folder, const ListedFile& file)
{
    const auto path = m_readingPaths.find(file.key);
    const std::string ours = pathIn(folder.path, file.name);
    if (!file.mayRepeat || path == m_readingPaths.end() || path->second == ours)
        return false;
    const auto reading = m_reading.find(path->second);
    if (reading != m_reading.end() && reading->second.isLink && !file.isLink) {
        m_doubles[file.key].insert(path->second);
        forgetReading(std::string(path->second));
        return false;
    }
    m_doubles[file.key].insert(ours);
    return true;
}

/// Whether the index has this very file, whatever its name.
bool LibraryScanner::isKnown(const ListedFile& file) const
{
    const std::optional<PhotoRecord> record = m_index->find(file.key);
    return record && hasContentOf(*record, file);
}

LibraryScanner::Whereabouts LibraryScanner::whereabouts(const PhotoRecord& record) const
{
    const TreeFolder* folder = m_tree->withID(record.folder);
    const std::optional<ListedFile> file = folder ? findFile(folder->path, record.name) : std::nullopt;
    if (!file || file->key != record.key)
        return Whereabouts::Gone;
    return file->isLink ? Whereabouts::Link : Whereabouts::File;
}

/// `id`: of the row that the file has; 0: none.
void LibraryScanner::read(const TreeFolder& folder, const ListedFile& file, PhotoID id)
{
    const std::string path = pathIn(folder.path, file.name);
    forgetReading(path);
    m_reading[path] = {++m_ticket, folder.id, file.key, file.modified, file.bytes, file.isLink};
    m_readingPaths[file.key] = path;
    m_missing.erase(id);
    FactsJob job{.ticket = m_ticket, .folderPath = folder.path, .file = file, .record = {}};
    job.record.id = id;
    job.record.folder = folder.id;
    m_jobs.push_back(std::move(job));
}

void LibraryScanner::forgetReading(const std::string& path)
{
    const auto reading = m_reading.find(path);
    if (reading == m_reading.end())
        return;
    const auto holder = m_readingPaths.find(reading->second.key);
    if (holder != m_readingPaths.end() && holder->second == path)
        m_readingPaths.erase(holder);
    m_reading.erase(reading);
}

/// What was still being read and is no longer there.
void LibraryScanner::forgetReadings(const TreeFolder& folder, const std::vector<ListedFile>& files,
                                    const std::set<std::string>* names)
{
    if (m_reading.empty())
        return;
    std::set<std::string> gone;
    if (names) {
        for (const std::string& name : *names)
            gone.insert(pathIn(folder.path, name));
    } else {
        for (const auto& [path, reading] : m_reading) {
            if (reading.folder == folder.id)
                gone.insert(path);
        }
    }
    for (const ListedFile& file : files)
        gone.erase(pathIn(folder.path, file.name));
    for (const std::string& path : gone)
        forgetReading(path);
}

void LibraryScanner::takeFacts()
{
    for (FactsJob& job : m_facts.take()) {
        const std::string path = pathIn(job.folderPath, job.file.name);
        const auto reading = m_reading.find(path);
        const TreeFolder* folder = m_tree->at(job.folderPath);
        if (reading == m_reading.end() || reading->second.ticket != job.ticket)
            continue;
        forgetReading(path);
        if (!folder)
            continue;
        job.record.folder = folder->id;
        m_writes.push_back({std::move(job.record), true});
    }
    if (m_writes.size() >= kMostWrites || m_facts.pending() == 0)
        flush();
}

PhotoID LibraryScanner::take(const std::string& folderPath, const ListedFile& file)
{
    const TreeFolder* folder = m_tree->at(folderPath);
    if (!folder || folder->id == 0 || !isPhotoName(file.name))
        return 0;
    flush();
    m_writes.push_back({readRecord(folderPath, file), true});
    m_writes.back().record.folder = folder->id;
    flush();
    const std::optional<PhotoRecord> record = m_index->find(file.key);
    return record ? record->id : 0;
}

/// Those of the missing that are not where the index has them by now: it may have heard of a move since their rows were
/// read.
std::vector<PhotoRecord> LibraryScanner::gonePhotos() const
{
    const std::vector<PhotoID> photos(m_missing.begin(), m_missing.end());
    std::vector<PhotoRecord> records = m_index->records(photos);
    std::erase_if(records, [&](const PhotoRecord& record) { return whereabouts(record) != Whereabouts::Gone; });
    return records;
}

void LibraryScanner::flush()
{
    if (m_writes.empty())
        return;
    std::vector<PhotoID> ids;
    m_index->write([&](PhotoIndex::Writer& writer) {
        ids.clear();
        for (const Write& write : m_writes)
            ids.push_back(writer.putPhoto(write.record));
    });
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const auto& [record, isOther] = m_writes[i];
        m_places.put({ids[i], record.folder, record.date}, stampOf(record), isOther);
        m_missing.erase(ids[i]);
    }
    m_writes.clear();
}

} // namespace lamina
