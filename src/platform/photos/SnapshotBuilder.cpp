#include "platform/photos/SnapshotBuilder_p.h"

#include <utility>

namespace lamina {

namespace {

PhotoIDs share(std::vector<PhotoID> photos)
{
    return std::make_shared<const std::vector<PhotoID>>(std::move(photos));
}

} // namespace

LibrarySnapshot SnapshotBuilder::build(const LibraryTree& tree, const LibraryPlaces& places,
                                       const std::unordered_set<FolderID>& folders, bool isOtherTree)
{
    const bool isOther = isOtherTree || m_isNew;
    if (m_isNew || !folders.empty())
        takePhotos(places.sorted(), folders);
    if (isOther)
        takeTree(tree);
    if (isOther || !folders.empty())
        takeSmart(places.sorted(), isOther ? std::unordered_set<FolderID>() : folders);
    m_isNew = false;

    LibrarySnapshot snapshot;
    std::array<std::vector<const TreeFolder*>, kKinds> smart;
    for (const TreeFolder* root : tree.roots()) {
        if (root->smart == SmartFolder::None)
            append(*root, -1, snapshot, smart);
        else
            smart[static_cast<std::size_t>(root->smart)].push_back(root);
    }
    for (const std::vector<const TreeFolder*>& kind : smart) {
        for (const TreeFolder* folder : kind)
            append(*folder, -1, snapshot, smart);
    }
    snapshot.all = m_all;
    snapshot.camera = m_smart[static_cast<std::size_t>(SmartFolder::Camera)];
    snapshot.screenshots = m_smart[static_cast<std::size_t>(SmartFolder::Screenshots)];
    snapshot.lamina = m_smart[static_cast<std::size_t>(SmartFolder::Lamina)];
    snapshot.folderPaths = m_paths;
    return snapshot;
}

void SnapshotBuilder::takePhotos(const std::vector<PhotoPlace>& places, const std::unordered_set<FolderID>& folders)
{
    std::vector<PhotoID> all;
    all.reserve(places.size());
    std::unordered_map<FolderID, std::vector<PhotoID>> fresh;
    for (const PhotoPlace& place : places) {
        all.push_back(place.id);
        if (m_isNew || folders.contains(place.folder))
            fresh[place.folder].push_back(place.id);
    }
    m_all = share(std::move(all));
    for (const FolderID folder : folders)
        m_photos.erase(folder);
    for (auto& [folder, photos] : fresh)
        m_photos[folder] = share(std::move(photos));
}

void SnapshotBuilder::takeTree(const LibraryTree& tree)
{
    std::unordered_map<FolderID, std::string> paths;
    m_kinds.clear();
    tree.visitAll([&](const TreeFolder& folder) {
        paths[folder.id] = folder.path;
        if (folder.smart != SmartFolder::None)
            m_kinds[folder.id] = folder.smart;
    });
    m_paths = std::make_shared<const std::unordered_map<FolderID, std::string>>(std::move(paths));
}

/// `folders`: as with `build`, or empty for all.
void SnapshotBuilder::takeSmart(const std::vector<PhotoPlace>& places, const std::unordered_set<FolderID>& folders)
{
    std::array<bool, kKinds> isOther{};
    isOther.fill(folders.empty());
    for (const FolderID folder : folders) {
        if (const auto kind = m_kinds.find(folder); kind != m_kinds.end())
            isOther[static_cast<std::size_t>(kind->second)] = true;
    }
    std::array<std::vector<PhotoID>, kKinds> photos;
    for (const PhotoPlace& place : places) {
        if (const auto kind = m_kinds.find(place.folder); kind != m_kinds.end())
            photos[static_cast<std::size_t>(kind->second)].push_back(place.id);
    }
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        if (isOther[kind] && *m_smart[kind] != photos[kind])
            m_smart[kind] = share(std::move(photos[kind]));
    }
}

PhotoIDs SnapshotBuilder::photosOf(FolderID folder) const
{
    const auto photos = m_photos.find(folder);
    return photos == m_photos.end() ? m_none : photos->second;
}

/// Appends a folder with all beneath it unless none of them has a photo; whether it has. A smart folder that is met on
/// the way is left for later.
bool SnapshotBuilder::append(const TreeFolder& folder, int parent, LibrarySnapshot& snapshot,
                             std::array<std::vector<const TreeFolder*>, kKinds>& smart) const
{
    // The folders of pictures stand at the top, and those of one that has moved are still to be found.
    const bool isShown = !folder.isPictures && folder.id != 0;
    const int place = isShown ? static_cast<int>(snapshot.folders.size()) : parent;
    const PhotoIDs photos = photosOf(folder.id);
    if (isShown) {
        snapshot.folders.push_back({.id = folder.id,
                                    .path = folder.path,
                                    .title = folder.title,
                                    .smart = folder.smart,
                                    .parent = parent,
                                    .photos = photos});
    }
    bool holdsPhotos = !photos->empty();
    for (const auto& child : folder.children) {
        if (child->smart != folder.smart)
            smart[static_cast<std::size_t>(child->smart)].push_back(child.get());
        else
            holdsPhotos = append(*child, place, snapshot, smart) || holdsPhotos;
    }
    if (isShown && !holdsPhotos)
        snapshot.folders.pop_back();
    return holdsPhotos;
}

} // namespace lamina
