#include "platform/photos/PHChangeRequests_p.h"

#include "platform/files/FileCauses.h"
#include "platform/files/PrivateFolder.h"
#include "platform/photos/Albums_p.h"
#include "platform/photos/LibraryReports_p.h"
#include "platform/photos/index/PhotoIndex.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace lamina {

namespace {

thread_local PHChangeRequests* t_current = nullptr;

void removeFiles(const std::vector<std::string>& paths)
{
    std::error_code ignored;
    for (const std::string& path : paths)
        std::filesystem::remove(path, ignored);
}

PHObjectPlaceholder newPlaceholder(PhotoIndex& index)
{
    return {index.localIdentifier(index.reserve())};
}

bool contains(const std::vector<PHObjectPlaceholder>& assets, const PHObjectPlaceholder& asset)
{
    return std::find(assets.begin(), assets.end(), asset) != assets.end();
}

/// Our own folder, which is made.
Result<std::string> ownFolder()
{
    const std::string folder = photoLibraryFolder();
    if (const Outcome made = makeFolder(folder); !made)
        return made.error();
    return folder;
}

} // namespace

void PHChangeRequests::perform(const std::function<void()>& changes, const std::function<void(const Outcome&)>& done)
{
    PHChangeRequests requests;
    requests.m_library = photoLibrary().snapshot();
    PHChangeRequests* const outer = std::exchange(t_current, &requests);
    changes();
    t_current = outer;
    // What takes long comes before the hold, under which the library stands still.
    const Result<std::vector<Creation>> creations = requests.creations();
    const LibraryEngine::Hold hold = photoLibrary().holdChanges();
    done(creations ? carryOut(*creations) : creations.error());
}

PHChangeRequests* PHChangeRequests::current()
{
    return t_current;
}

PHAssetChangeRequest* PHChangeRequests::addCreation(const UIImage& image)
{
    m_creations.emplace_back(new PHAssetChangeRequest(newPlaceholder(*m_library->index)));
    m_creations.back()->m_image = image;
    return m_creations.back().get();
}

PHAssetCreationRequest* PHChangeRequests::addCreation()
{
    auto* const creation = new PHAssetCreationRequest(newPlaceholder(*m_library->index));
    m_creations.emplace_back(creation);
    return creation;
}

PHAssetCollectionChangeRequest* PHChangeRequests::addCollectionChange(const PHAssetCollection& collection)
{
    m_albumChanges.emplace_back(new PHAssetCollectionChangeRequest(collection));
    return m_albumChanges.back().get();
}

Outcome PHChangeRequests::checkAlbums() const
{
    for (const auto& change : m_albumChanges) {
        const PHAssetCollection& album = change->m_collection;
        const Error refused{album.localizedTitle, QT_TRANSLATE_NOOP("Lamina", "photos can’t be added to this album")};
        if (album.assetCollectionType != PHAssetCollectionType::Album)
            return refused;
        for (const PHObjectPlaceholder& asset : change->m_added)
            if (std::none_of(m_creations.begin(), m_creations.end(),
                             [&](const auto& creation) { return creation->m_placeholder == asset; }))
                return refused;
    }
    return success();
}

/// Empty: our own.
Result<std::string> PHChangeRequests::folderFor(const PHObjectPlaceholder& asset) const
{
    for (const auto& change : m_albumChanges) {
        if (!contains(change->m_added, asset))
            continue;
        const AlbumKey album = albumKeyOf(*m_library, change->m_collection);
        const auto folder = m_library->folderPaths->find(album.folder);
        std::error_code ignored;
        if (folder == m_library->folderPaths->end() || !std::filesystem::is_directory(folder->second, ignored))
            return Error{change->m_collection.path, cause::kNoSuchFolder};
        return folder->second;
    }
    return std::string();
}

Result<std::vector<PHChangeRequests::Creation>> PHChangeRequests::creations() const
{
    if (const Outcome checked = checkAlbums(); !checked)
        return checked.error();
    std::vector<Creation> creations;
    for (const auto& request : m_creations) {
        const Result<std::string> folder = folderFor(request->m_placeholder);
        if (!folder)
            return folder.error();
        Result<NewPhoto> file = request->newPhoto();
        if (!file)
            return file.error();
        const std::optional<PhotoID> photo = m_library->index->photoID(request->m_placeholder.localIdentifier);
        creations.push_back({photo.value_or(0), *folder, *std::move(file)});
    }
    return creations;
}

Outcome PHChangeRequests::carryOut(const std::vector<Creation>& creations)
{
    std::vector<std::string> paths;
    const auto undone = [&paths](Error error) {
        removeFiles(paths);
        return error;
    };
    for (const Creation& creation : creations) {
        const Result<std::string> folder = creation.folder.empty() ? ownFolder() : creation.folder;
        if (!folder)
            return undone(folder.error());
        Result<std::string> path = saveInFolder(*folder, creation.file);
        if (!path)
            return undone(path.error());
        paths.push_back(*std::move(path));
    }
    for (std::size_t i = 0; i < creations.size(); ++i)
        if (const Result<PhotoID> adopted = photoLibrary().adopt(creations[i].photo, paths[i]); !adopted)
            return undone(adopted.error());
    return success();
}

} // namespace lamina
