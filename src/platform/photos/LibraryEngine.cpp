#include "platform/photos/LibraryEngine_p.h"

#include "platform/files/FileCauses.h"
#include "platform/photos/FolderWalk_p.h"
#include "platform/photos/LibraryEngineImpl_p.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace lamina {

namespace {

/// What somebody who leaves is kept waiting at most. The thread may be at a disk that doesn't answer.
constexpr std::chrono::milliseconds kLongestLeave{200};

/// Another process may have found the file before it had its identifier, and shows it under one that has ended. Its
/// watch tells of a file's mode, the same one too.
void makeOthersLook(const std::string& path)
{
    std::error_code ignored;
    std::filesystem::permissions(path, std::filesystem::perms::none, std::filesystem::perm_options::add, ignored);
}

} // namespace

LibraryEngine& LibraryEngine::shared()
{
    static auto* const engine = [] {
        auto* const made = new LibraryEngine(defaultLibraryRoots());
        std::atexit([] { shared().m_impl->stop(kLongestLeave); });
        return made;
    }();
    return *engine;
}

LibraryEngine::LibraryEngine(LibraryRoots roots, Limits limits)
    : m_impl(std::make_shared<Impl>(std::move(roots), limits))
{
}

LibraryEngine::~LibraryEngine()
{
    m_impl->stop(std::chrono::hours(1));
}

void LibraryEngine::configure(LibraryRoots roots)
{
    m_impl->configure(std::move(roots));
}

LibraryRoots LibraryEngine::roots() const
{
    return m_impl->roots();
}

bool LibraryEngine::isRunning() const
{
    return m_impl->isRunning();
}

LibrarySnapshotPtr LibraryEngine::snapshot()
{
    m_impl->start();
    return m_impl->snapshot();
}

void LibraryEngine::setChangeHandler(std::function<void(const LibraryChange&)> handler)
{
    m_impl->setHandler(std::move(handler));
}

LibraryEngine::Hold LibraryEngine::holdChanges()
{
    m_impl->hold();
    return Hold(std::shared_ptr<void>(nullptr, [impl = m_impl](void*) { impl->release(); }));
}

Result<PhotoID> LibraryEngine::adopt(PhotoID reserved, const std::string& path)
{
    m_impl->start();
    const std::string folderPath = parentPath(path);
    const std::optional<ListedFile> file = findFile(folderPath, path.substr(path.rfind('/') + 1));
    const std::optional<FileKey> folder = findFolder(folderPath);
    if (!file || !folder)
        return Error{path, cause::kNoSuchFile};
    PhotoRecord record = readRecord(folderPath, *file);
    const bool isPhoto = isPhotoName(file->name);
    PhotoID photo = 0;
    m_impl->index()->write([&](PhotoIndex::Writer& writer) {
        record.id = reserved;
        record.folder = writer.putFolder({.path = folderPath, .key = *folder});
        photo = writer.putNewPhoto(record);
        if (!isPhoto)
            writer.markGone({&photo, 1});
    });
    if (!isPhoto)
        return photo;
    makeOthersLook(path);
    m_impl->post([impl = m_impl.get(), path] { impl->adopt(path); });
    return photo;
}

void LibraryEngine::addLooseFiles(std::vector<std::string> paths, std::function<void(std::vector<PhotoID>)> handler)
{
    m_impl->start();
    m_impl->post([impl = m_impl.get(), paths = std::move(paths), handler = std::move(handler)] {
        impl->takeLoose(paths, handler);
    });
}

void LibraryEngine::rescan()
{
    if (m_impl->isRunning())
        m_impl->post([impl = m_impl.get()] { impl->rescan(); });
}

void LibraryEngine::waitUntilComplete()
{
    m_impl->start();
    m_impl->waitUntilComplete();
}

} // namespace lamina
