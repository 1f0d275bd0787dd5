#include "platform/photos/index/PhotoIndex.h"

#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/files/PrivateFolder.h"
#include "platform/photos/index/MemoryPhotoStore_p.h"
#include "platform/photos/index/PhotoStoreModule_p.h"
#include "platform/photos/index/PhotoStore_p.h"

#include <charconv>
#include <chrono>
#include <utility>

namespace lamina {

namespace {

constexpr std::int64_t kDay = 24 * 60 * 60;
/// How long what is gone keeps its identifier.
constexpr std::int64_t kKeptGone = 30 * kDay;

std::int64_t secondsNow()
{
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

std::unique_ptr<PhotoStore> storeInMemory(const std::string& cause, StoreContents contents)
{
    logWarning("the index of photos is kept in memory: " + cause);
    return makeMemoryPhotoStore(std::move(contents));
}

std::unique_ptr<PhotoStore> openStore(const std::string& cacheFolder)
{
    if (cacheFolder.empty())
        return makeMemoryPhotoStore({});
    const Result<const PhotoStoreModule*> module = photoStoreModule();
    if (!module)
        return storeInMemory(module.error().cause, {});
    const std::string folder = cacheFolder + "/photos";
    const std::string path = folder + "/photos.sqlite";
    if (const Outcome made = makePrivateFolder(folder); !made)
        return storeInMemory(made.error().cause, (*module)->read(path));
    Result<std::unique_ptr<PhotoStore>> opened = (*module)->open({path, makeIndexIdentity(), logWarning});
    if (!opened)
        return storeInMemory(opened.error().cause, (*module)->read(path));
    return std::move(*opened);
}

} // namespace

std::shared_ptr<PhotoIndex> PhotoIndex::open(const std::string& cacheFolder)
{
    return std::shared_ptr<PhotoIndex>(new PhotoIndex(openStore(cacheFolder)));
}

PhotoIndex::PhotoIndex(std::unique_ptr<PhotoStore> store)
    : m_identity(store->identity())
    , m_store(std::move(store))
{
}

PhotoIndex::~PhotoIndex() = default;

std::shared_ptr<PhotoStore> PhotoIndex::store() const
{
    const std::lock_guard lock(m_storeMutex);
    return m_store;
}

void PhotoIndex::leave(const std::shared_ptr<PhotoStore>& store, const std::string& cause) const
{
    const std::lock_guard lock(m_storeMutex);
    if (m_store != store)
        return;
    m_lossesBefore += store->lossCount() + 1;
    m_store = storeInMemory(cause, store->contents());
}

template <class Read>
auto PhotoIndex::read(const Read& read) const
{
    std::shared_ptr<PhotoStore> from = store();
    auto result = read(*from);
    while (!result) {
        leave(from, result.error().cause);
        from = store();
        result = read(*from);
    }
    return std::move(*result);
}

void PhotoIndex::change(const std::function<void(PhotoRows&)>& changes) const
{
    const std::lock_guard lock(m_writing);
    for (;;) {
        const std::shared_ptr<PhotoStore> to = store();
        if (const Outcome written = to->write(changes); !written)
            leave(to, written.error().cause);
        else if (to == store()) // it was not left meanwhile, for something read
            return;
    }
}

bool PhotoIndex::isKept() const
{
    return store()->isKept();
}

std::uint64_t PhotoIndex::lossCount() const
{
    const std::lock_guard lock(m_storeMutex);
    return m_lossesBefore + m_store->lossCount();
}

std::vector<FolderRecord> PhotoIndex::folders() const
{
    return read([](PhotoStore& store) { return store.folders(); });
}

std::vector<PhotoPlace> PhotoIndex::photos() const
{
    return read([](PhotoStore& store) { return store.photos(); });
}

std::vector<PhotoRecord> PhotoIndex::photosInFolder(FolderID folder) const
{
    return read([folder](PhotoStore& store) { return store.photosInFolder(folder); });
}

std::vector<PhotoRecord> PhotoIndex::records(std::span<const PhotoID> photos) const
{
    return read([photos](PhotoStore& store) { return store.records(photos); });
}

std::optional<PhotoRecord> PhotoIndex::find(FileKey key) const
{
    if (!key.isKnown())
        return std::nullopt;
    return read([key](PhotoStore& store) { return store.find(key); });
}

void PhotoIndex::write(const std::function<void(Writer&)>& changes)
{
    change([&](PhotoRows& rows) {
        const std::int64_t now = secondsNow();
        if (!m_forgotten)
            rows.forget(now - kKeptGone);
        Writer writer(rows, now);
        changes(writer);
    });
    m_forgotten = true;
}

PhotoID PhotoIndex::reserve()
{
    PhotoID id = 0;
    change([&id](PhotoRows& rows) { id = rows.nextID(); });
    return id;
}

std::string PhotoIndex::localIdentifier(PhotoID photo) const
{
    return m_identity + '-' + std::to_string(photo);
}

std::optional<PhotoID> PhotoIndex::photoID(std::string_view localIdentifier) const
{
    const std::string start = m_identity + '-';
    if (!localIdentifier.starts_with(start))
        return std::nullopt;
    localIdentifier.remove_prefix(start.size());
    PhotoID id = 0;
    const char* const end = localIdentifier.data() + localIdentifier.size();
    const std::from_chars_result read = std::from_chars(localIdentifier.data(), end, id);
    if (read.ec != std::errc() || read.ptr != end || this->localIdentifier(id) != start + std::string(localIdentifier))
        return std::nullopt;
    return id;
}

} // namespace lamina
