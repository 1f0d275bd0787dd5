#include "platform/photos/index/MemoryPhotoStore_p.h"

#include "platform/base/Result.h"
#include "platform/photos/index/PhotoRecords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <random>
#include <shared_mutex>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

namespace lamina {

namespace {

using KeyValues = std::pair<std::uint64_t, std::uint64_t>;

KeyValues valuesOf(FileKey key)
{
    return {key.device, key.inode};
}

/// Rows of one kind by id, by file key and by name; a name is whatever else belongs to one row alone.
template <class Record, class Name>
class RowTable {
public:
    using Row = KeptRow<Record>;

    const std::map<std::int64_t, Row>& all() const { return m_rows; }

    const Row* withID(std::int64_t id) const
    {
        const auto found = m_rows.find(id);
        return found == m_rows.end() ? nullptr : &found->second;
    }
    const Row* withKey(FileKey key) const { return at(m_keys, valuesOf(key)); }
    const Row* named(const Name& name) const { return at(m_names, name); }

    bool insert(const Row& row, Name name)
    {
        if (withID(row.record.id) != nullptr || withKey(row.record.key) != nullptr || named(name) != nullptr)
            return false;
        add(row, std::move(name));
        return true;
    }
    void update(const Row& row, const Name& before, Name name)
    {
        remove(row.record.id, before);
        add(row, std::move(name));
    }
    void remove(std::int64_t id, const Name& name)
    {
        m_keys.erase(valuesOf(m_rows.at(id).record.key));
        m_names.erase(name);
        m_rows.erase(id);
    }
    void markGone(std::int64_t id, std::int64_t since)
    {
        const auto found = m_rows.find(id);
        if (found != m_rows.end() && found->second.gone == 0)
            found->second.gone = since;
    }

private:
    template <class Index, class Value>
    const Row* at(const Index& index, const Value& value) const
    {
        const auto found = index.find(value);
        return found == index.end() ? nullptr : withID(found->second);
    }
    void add(const Row& row, Name name)
    {
        if (row.record.key.isKnown())
            m_keys[valuesOf(row.record.key)] = row.record.id;
        m_names[std::move(name)] = row.record.id;
        m_rows[row.record.id] = row;
    }

    std::map<std::int64_t, Row> m_rows;
    std::map<KeyValues, std::int64_t> m_keys;
    std::map<Name, std::int64_t> m_names;
};

using PhotoName = std::pair<FolderID, std::string>;

PhotoName nameOf(const PhotoRow& row)
{
    return {row.record.folder, row.record.name};
}

template <class Row>
std::optional<Row> copyOf(const Row* row)
{
    return row == nullptr ? std::nullopt : std::optional(*row);
}

class MemoryRows final : public PhotoRows {
public:
    explicit MemoryRows(StoreContents contents)
        : m_next(contents.nextID)
    {
        for (const FolderRow& row : contents.folders)
            insertFolder(row);
        for (const PhotoRow& row : contents.photos)
            insertPhoto(row);
    }

    const RowTable<PhotoRecord, PhotoName>& photos() const { return m_photos; }
    const RowTable<FolderRecord, std::string>& folders() const { return m_folders; }

    std::int64_t nextID() override { return m_next++; }
    std::optional<PhotoRow> photoWithKey(FileKey key) override { return copyOf(m_photos.withKey(key)); }
    std::optional<PhotoRow> photoNamed(FolderID folder, const std::string& name) override
    {
        return copyOf(m_photos.named({folder, name}));
    }
    PhotoID insertPhoto(const PhotoRow& row) override { return insert(m_photos, row, nameOf(row)); }
    bool renewPhoto(const PhotoRow& row) override
    {
        const PhotoRow* const before = m_photos.withID(row.record.id);
        if (before == nullptr || nameOf(*before) != nameOf(row) || before->record.key != row.record.key)
            return false;
        updatePhoto(row);
        return true;
    }
    void updatePhoto(const PhotoRow& row) override
    {
        if (const PhotoRow* before = m_photos.withID(row.record.id))
            m_photos.update(row, nameOf(*before), nameOf(row));
    }
    void markPhotoGone(PhotoID photo, std::int64_t since) override { m_photos.markGone(photo, since); }
    void markFolderGone(FolderID folder, std::int64_t since) override
    {
        m_folders.markGone(folder, since);
        for (const auto& [id, row] : m_photos.all()) {
            if (row.record.folder == folder)
                m_photos.markGone(id, since);
        }
    }
    std::optional<FolderRow> folderWithKey(FileKey key) override { return copyOf(m_folders.withKey(key)); }
    std::optional<FolderRow> folderAt(const std::string& path) override { return copyOf(m_folders.named(path)); }
    FolderID insertFolder(const FolderRow& row) override { return insert(m_folders, row, row.record.path); }
    void updateFolder(const FolderRow& row) override
    {
        if (const FolderRow* before = m_folders.withID(row.record.id))
            m_folders.update(row, std::string(before->record.path), row.record.path);
    }
    /// Rows in memory go with the process.
    void forget(std::int64_t) override {}

private:
    template <class Table, class Row, class Name>
    std::int64_t insert(Table& table, Row row, const Name& name)
    {
        if (row.record.id == 0)
            row.record.id = m_next;
        if (!table.insert(row, name))
            return 0;
        m_next = std::max(m_next, row.record.id + 1);
        return row.record.id;
    }

    RowTable<PhotoRecord, PhotoName> m_photos;
    RowTable<FolderRecord, std::string> m_folders;
    std::int64_t m_next;
};

class MemoryPhotoStore final : public PhotoStore {
public:
    explicit MemoryPhotoStore(StoreContents contents)
        : m_identity(contents.identity.empty() ? makeIndexIdentity() : contents.identity)
        , m_rows(std::move(contents))
    {
    }

    std::string identity() const override { return m_identity; }
    bool isKept() const override { return false; }
    std::uint64_t lossCount() const override { return 0; }

    Result<std::vector<FolderRecord>> folders() override
    {
        return recordsThere(m_rows.folders(), [](const FolderRecord&) { return true; });
    }
    Result<std::vector<PhotoPlace>> photos() override
    {
        const std::shared_lock lock(m_mutex);
        std::vector<PhotoPlace> places;
        for (const auto& [id, row] : m_rows.photos().all()) {
            if (row.gone == 0)
                places.push_back({id, row.record.folder, row.record.date});
        }
        std::sort(places.begin(), places.end(), isShownBefore);
        return places;
    }
    Result<std::vector<PhotoRecord>> photosInFolder(FolderID folder) override
    {
        return recordsThere(m_rows.photos(), [folder](const PhotoRecord& photo) { return photo.folder == folder; });
    }
    Result<std::vector<PhotoRecord>> records(std::span<const PhotoID> photos) override
    {
        const std::shared_lock lock(m_mutex);
        std::vector<PhotoRecord> records;
        for (const PhotoID id : photos) {
            const PhotoRow* const row = m_rows.photos().withID(id);
            records.push_back(row == nullptr ? PhotoRecord() : row->record);
        }
        return records;
    }
    Result<std::optional<PhotoRecord>> find(FileKey key) override
    {
        const std::shared_lock lock(m_mutex);
        const PhotoRow* const row = m_rows.photos().withKey(key);
        return row == nullptr ? std::nullopt : std::optional(row->record);
    }
    Outcome write(const std::function<void(PhotoRows&)>& changes) override
    {
        const std::unique_lock lock(m_mutex);
        changes(m_rows);
        return success();
    }

private:
    template <class Record, class Name, class Wanted>
    std::vector<Record> recordsThere(const RowTable<Record, Name>& table, const Wanted& wanted)
    {
        const std::shared_lock lock(m_mutex);
        std::vector<Record> records;
        for (const auto& entry : table.all()) {
            if (entry.second.gone == 0 && wanted(entry.second.record))
                records.push_back(entry.second.record);
        }
        return records;
    }

    std::shared_mutex m_mutex;
    const std::string m_identity;
    MemoryRows m_rows;
};

} // namespace

std::string makeIndexIdentity()
{
    std::random_device chance;
    std::array<char, 16> digits;
    digits.fill('0');
    for (std::size_t half = 0; half < 2; ++half) {
        std::array<char, 8> text;
        const std::to_chars_result end =
            std::to_chars(text.data(), text.data() + text.size(), chance() & 0xFFFFFFFFu, 16);
        std::copy_backward(text.data(), end.ptr, digits.data() + 8 * (half + 1));
    }
    return std::string(digits.data(), digits.size());
}

std::unique_ptr<PhotoStore> makeMemoryPhotoStore(StoreContents contents)
{
    return std::make_unique<MemoryPhotoStore>(std::move(contents));
}

} // namespace lamina
