#include "platform/photos/PHCollection.h"

#include "platform/base/Localization.h"
#include "platform/photos/Albums_p.h"
#include "platform/photos/LibraryReports_p.h"
#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/PHFetchResult_p.h"
#include "platform/photos/index/PhotoIndex.h"
#include "platform/photos/index/PhotoRecords.h"

#include <QCoreApplication>

#include <array>
#include <charconv>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>

namespace lamina {

namespace {

using Subtype = PHAssetCollectionSubtype;

struct SmartAlbum {
    Subtype subtype;
    SmartFolder folder; ///< those that it gathers; none: all photos
    const char* identifier;
    const char* title;
};

/// In the order in which they are fetched.
constexpr std::array kSmartAlbums{
    SmartAlbum{Subtype::SmartAlbumUserLibrary, SmartFolder::None, "/all", QT_TRANSLATE_NOOP("Lamina", "All Photos")},
    SmartAlbum{Subtype::SmartAlbumCamera, SmartFolder::Camera, "/camera", QT_TRANSLATE_NOOP("Lamina", "Camera")},
    SmartAlbum{Subtype::SmartAlbumScreenshots, SmartFolder::Screenshots, "/screenshots",
               QT_TRANSLATE_NOOP("Lamina", "Screenshots")},
    SmartAlbum{Subtype::SmartAlbumLamina, SmartFolder::Lamina, "/lamina", QT_TRANSLATE_NOOP("Lamina", "Lamina")},
};

/// Between the index's identity and a folder's number.
constexpr std::string_view kFolderMark = "/folder/";
constexpr std::string_view kListMark = "/list/";

std::string identifierOf(const LibrarySnapshot& library, std::string_view mark, FolderID folder)
{
    return library.index->identity() + std::string(mark) + std::to_string(folder);
}

/// The folder that an identifier names; 0 for any other text.
FolderID folderOf(const LibrarySnapshot& library, std::string_view mark, std::string_view identifier)
{
    const std::string start = library.index->identity() + std::string(mark);
    if (!identifier.starts_with(start))
        return 0;
    FolderID folder = 0;
    const char* const end = identifier.data() + identifier.size();
    const auto read = std::from_chars(identifier.data() + start.size(), end, folder);
    return read.ec == std::errc() && read.ptr == end ? folder : 0;
}

/// The folder of a smart album that has one alone.
std::string onlyPath(const LibrarySnapshot& library, SmartFolder smart)
{
    std::string path;
    for (const LibraryFolder& folder : library.folders) {
        const bool isTop = folder.parent < 0 || library.folders[static_cast<std::size_t>(folder.parent)].smart != smart;
        if (smart == SmartFolder::None || folder.smart != smart || !isTop)
            continue;
        if (!path.empty())
            return {};
        path = folder.path;
    }
    return path;
}

PHAssetCollection collectionOf(const LibrarySnapshot& library, const SmartAlbum& album)
{
    return {.localIdentifier = library.index->identity() + album.identifier,
            .localizedTitle = localizedString(album.title),
            .assetCollectionType = PHAssetCollectionType::SmartAlbum,
            .assetCollectionSubtype = album.subtype,
            .path = onlyPath(library, album.folder)};
}

PHAssetCollection collectionOf(const LibrarySnapshot& library, const LibraryFolder& folder)
{
    return {.localIdentifier = identifierOf(library, kFolderMark, folder.id),
            .localizedTitle = folder.title,
            .assetCollectionType = PHAssetCollectionType::Album,
            .assetCollectionSubtype = Subtype::AlbumRegular,
            .path = folder.path};
}

/// The folders in one, or those at the top for -1, as a person sees them.
std::vector<PHCollection> collectionsIn(const LibrarySnapshot& library, int parent)
{
    const auto isShown = [](const LibraryFolder& folder) { return folder.smart == SmartFolder::None; };
    std::vector<bool> holdsFolders(library.folders.size());
    for (const LibraryFolder& folder : library.folders)
        if (folder.parent >= 0 && isShown(folder))
            holdsFolders[static_cast<std::size_t>(folder.parent)] = true;
    std::vector<PHCollection> found;
    for (std::size_t i = 0; i < library.folders.size(); ++i) {
        const LibraryFolder& folder = library.folders[i];
        if (folder.parent != parent || !isShown(folder))
            continue;
        if (holdsFolders[i])
            found.emplace_back(
                PHCollectionList{identifierOf(library, kListMark, folder.id), folder.title, folder.path});
        else if (!folder.photos->empty())
            found.emplace_back(collectionOf(library, folder));
    }
    return found;
}

} // namespace

AlbumKey albumKeyOf(const LibrarySnapshot& library, const PHAssetCollection& collection)
{
    return {collection.assetCollectionSubtype, folderOf(library, kFolderMark, collection.localIdentifier)};
}

PhotoIDs photosOf(const LibrarySnapshot& library, const AlbumKey& album)
{
    switch (album.subtype) {
    case Subtype::SmartAlbumUserLibrary:
        return library.all;
    case Subtype::SmartAlbumScreenshots:
        return library.screenshots;
    case Subtype::SmartAlbumCamera:
        return library.camera;
    case Subtype::SmartAlbumLamina:
        return library.lamina;
    case Subtype::AlbumRegular:
        break;
    }
    for (const LibraryFolder& folder : library.folders)
        if (folder.id == album.folder)
            return folder.photos;
    return std::make_shared<const std::vector<PhotoID>>();
}

std::vector<PHCollection> fetchTopLevelUserCollections()
{
    return collectionsIn(*photoLibrary().snapshot(), -1);
}

std::vector<PHCollection> fetchCollectionsInCollectionList(const PHCollectionList& list)
{
    const LibrarySnapshotPtr library = photoLibrary().snapshot();
    const FolderID wanted = folderOf(*library, kListMark, list.localIdentifier);
    for (std::size_t i = 0; i < library->folders.size(); ++i) {
        const LibraryFolder& folder = library->folders[i];
        if (folder.id != wanted)
            continue;
        std::vector<PHCollection> found = collectionsIn(*library, static_cast<int>(i));
        if (!folder.photos->empty())
            found.insert(found.begin(), collectionOf(*library, folder));
        return found;
    }
    return {};
}

std::vector<PHAssetCollection> fetchAssetCollectionsWithType(PHAssetCollectionType type,
                                                             PHAssetCollectionSubtype subtype)
{
    const LibrarySnapshotPtr library = photoLibrary().snapshot();
    std::vector<PHAssetCollection> found;
    if (type == PHAssetCollectionType::SmartAlbum) {
        for (const SmartAlbum& album : kSmartAlbums)
            if (subtype == Subtype::AlbumRegular || subtype == album.subtype)
                found.push_back(collectionOf(*library, album));
    } else if (subtype == Subtype::AlbumRegular) {
        for (const LibraryFolder& folder : library->folders)
            if (folder.smart == SmartFolder::None && !folder.photos->empty())
                found.push_back(collectionOf(*library, folder));
    }
    return found;
}

PHFetchResult fetchAssetsInAssetCollection(const PHAssetCollection& collection)
{
    const LibrarySnapshotPtr library = photoLibrary().snapshot();
    return PHFetchResult(std::make_shared<const PHFetchResult::Content>(library, albumKeyOf(*library, collection)));
}

} // namespace lamina
