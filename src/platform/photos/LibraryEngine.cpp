#include "platform/photos/LibraryEngine_p.h"

#include "platform/photos/PhotoIndex_p.h"

#include <filesystem>
#include <mutex>
#include <utility>

namespace lamina {

class LibraryEngine::Impl {
public:
    std::mutex mutex;
    LibraryRoots roots;
    LibrarySnapshotPtr snapshot;
    std::function<void(const LibraryChange&)> handler;
};

LibraryEngine& LibraryEngine::shared()
{
    static auto* const engine = new LibraryEngine(defaultLibraryRoots());
    return *engine;
}

LibraryEngine::LibraryEngine(LibraryRoots roots, Limits)
    : m_impl(std::make_shared<Impl>())
{
    m_impl->roots = std::move(roots);
}

LibraryEngine::~LibraryEngine() = default;

void LibraryEngine::configure(LibraryRoots roots)
{
    const std::lock_guard lock(m_impl->mutex);
    m_impl->roots = std::move(roots);
}

LibraryRoots LibraryEngine::roots() const
{
    const std::lock_guard lock(m_impl->mutex);
    return m_impl->roots;
}

LibrarySnapshotPtr LibraryEngine::snapshot()
{
    const std::lock_guard lock(m_impl->mutex);
    if (!m_impl->snapshot) {
        const auto none = std::make_shared<const std::vector<PhotoID>>();
        m_impl->snapshot = std::make_shared<const LibrarySnapshot>(LibrarySnapshot{
            .all = none,
            .folders = {},
            .camera = none,
            .screenshots = none,
            .lamina = none,
            .folderPaths = std::make_shared<const std::unordered_map<FolderID, std::string>>(),
            .looseFiles = std::make_shared<const std::vector<LooseFile>>(),
            .index = PhotoIndex::open(""),
            .complete = true,
        });
    }
    return m_impl->snapshot;
}

void LibraryEngine::setChangeHandler(std::function<void(const LibraryChange&)> handler)
{
    const std::lock_guard lock(m_impl->mutex);
    m_impl->handler = std::move(handler);
}

LibraryEngine::Hold LibraryEngine::holdChanges()
{
    return {};
}

Result<PhotoID> LibraryEngine::adopt(PhotoID reserved, const std::string& path)
{
    const std::filesystem::path file(path);
    PhotoID adopted = 0;
    snapshot()->index->write([&](PhotoIndex::Writer& writer) {
        FolderRecord folder;
        folder.path = file.parent_path();
        PhotoRecord photo;
        photo.id = reserved;
        photo.folder = writer.putFolder(folder);
        photo.name = file.filename();
        adopted = writer.putPhoto(photo);
    });
    return adopted;
}

void LibraryEngine::addLooseFiles(std::vector<std::string> paths, std::function<void(std::vector<PhotoID>)> handler)
{
    handler(std::vector<PhotoID>(paths.size(), 0));
}

void LibraryEngine::rescan() {}

void LibraryEngine::waitUntilComplete()
{
    snapshot();
}

} // namespace lamina
