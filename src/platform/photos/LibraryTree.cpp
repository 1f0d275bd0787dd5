#include "platform/photos/LibraryTree_p.h"

#include "platform/files/ASCIICase.h"
#include "platform/photos/FolderTitle_p.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <system_error>
#include <utility>

namespace lamina {

namespace {

struct SmartName {
    std::string_view name;
    SmartFolder kind;
};
/// As cameras and desktops name them, in the languages that we speak.
constexpr std::array<SmartName, 4> kSmartNames = {{
    {"Camera", SmartFolder::Camera},
    {"Kamera", SmartFolder::Camera},
    {"Screenshots", SmartFolder::Screenshots},
    {"Bildschirmfotos", SmartFolder::Screenshots},
}};

std::string_view lastPart(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

/// Whether a walk from the one folder comes to the other by itself.
bool leadsTo(const std::string& folder, const std::string& path)
{
    std::string part = path;
    while (part.size() > folder.size()) {
        std::error_code ignored;
        if (lastPart(part).starts_with('.') || std::filesystem::is_symlink(part, ignored))
            return false;
        part = parentPath(part);
    }
    return part == folder;
}

/// Whether what lies in this folder can be a camera's: a root, or the folder in it that cards have for photos.
bool holdsSmartFolders(const TreeFolder& folder)
{
    return folder.depth == 0 || (folder.depth == 1 && equalIgnoringCase(lastPart(folder.path), "DCIM"));
}

/// Removes an entry unless another folder has taken it over.
template <class Map, class Key>
void release(Map& map, const Key& key, const TreeFolder& folder)
{
    const auto found = map.find(key);
    if (found != map.end() && found->second == &folder)
        map.erase(found);
}

} // namespace

LibraryTree::LibraryTree(const LibraryRoots& roots)
    : m_pictures(withoutSlashes(roots.pictures))
    , m_ownFolder(withoutSlashes(roots.ownFolder))
{
    std::vector<std::string> paths{m_pictures};
    for (const std::string& path : roots.further)
        paths.push_back(withoutSlashes(path));
    paths.push_back(m_ownFolder);
    for (const std::string& path : paths) {
        const auto holds = [&](const std::string& other) { return other != path && leadsTo(other, path); };
        const bool isHeld = &path != &paths.front() && std::ranges::any_of(paths, holds);
        if (path.starts_with('/') && !isHeld && std::ranges::find(m_rootPaths, path) == m_rootPaths.end())
            m_rootPaths.push_back(path);
    }
    m_roots.resize(m_rootPaths.size());
}

void LibraryTree::load(std::vector<FolderRecord> records)
{
    std::ranges::sort(records, {}, &FolderRecord::path);
    for (const FolderRecord& record : records) {
        const bool isRoot = std::ranges::find(m_rootPaths, record.path) != m_rootPaths.end();
        TreeFolder* parent = isRoot ? nullptr : at(parentPath(record.path));
        if (!isRoot && !parent)
            continue;
        TreeFolder& folder = isRoot ? addRoot(record.path) : addChild(*parent, std::string(lastPart(record.path)));
        setID(folder, record.id);
        setKey(folder, record.key);
    }
}

TreeFolder* LibraryTree::nearest(std::string path) const
{
    TreeFolder* folder = nullptr;
    while (!(folder = at(path)) && path.size() > 1)
        path = parentPath(path);
    return folder;
}

SmartFolder LibraryTree::smartKind(const TreeFolder* parent, const std::string& path, std::string_view name) const
{
    if (path == m_ownFolder)
        return SmartFolder::Lamina;
    if (!parent || parent->smart != SmartFolder::None)
        return parent ? parent->smart : SmartFolder::None;
    const auto smart = std::ranges::find_if(
        kSmartNames, [&](const SmartName& candidate) { return equalIgnoringCase(candidate.name, name); });
    return holdsSmartFolders(*parent) && smart != kSmartNames.end() ? smart->kind : SmartFolder::None;
}

TreeFolder& LibraryTree::enter(std::unique_ptr<TreeFolder>& folder, const std::string& path, std::string_view name)
{
    folder->path = path;
    folder->title = folderTitle(name);
    folder->smart = smartKind(folder->parent, path, name);
    m_byPath[path] = folder.get();
    return *folder;
}

TreeFolder& LibraryTree::addRoot(const std::string& path)
{
    const auto place = std::ranges::find(m_rootPaths, path) - m_rootPaths.begin();
    std::unique_ptr<TreeFolder>& folder = m_roots.at(static_cast<std::size_t>(place));
    if (folder)
        return *folder;
    folder = std::make_unique<TreeFolder>();
    folder->isPictures = path == m_pictures;
    return enter(folder, path, lastPart(path));
}

TreeFolder& LibraryTree::addChild(TreeFolder& parent, const std::string& name)
{
    const std::string path = pathIn(parent.path, name);
    if (TreeFolder* there = at(path))
        return *there;
    auto child = std::make_unique<TreeFolder>();
    child->parent = &parent;
    child->depth = parent.depth + 1;
    TreeFolder& entered = enter(child, path, name);
    const auto place = std::ranges::upper_bound(parent.children, entered.title, isTitledBefore,
                                                [](const auto& other) -> const std::string& { return other->title; });
    parent.children.insert(place, std::move(child));
    return entered;
}

void LibraryTree::remove(TreeFolder& folder)
{
    visit(folder, [&](TreeFolder& each) {
        release(m_byPath, each.path, each);
        release(m_byID, each.id, each);
        release(m_byKey, each.key, each);
        release(m_byWatch, each.watch, each);
    });
    auto& siblings = folder.parent ? folder.parent->children : m_roots;
    const auto place = std::ranges::find(siblings, &folder, &std::unique_ptr<TreeFolder>::get);
    if (folder.parent)
        siblings.erase(place);
    else
        place->reset();
}

void LibraryTree::setID(TreeFolder& folder, FolderID id)
{
    release(m_byID, folder.id, folder);
    if (TreeFolder* former = withID(id); former && former != &folder)
        former->id = 0;
    folder.id = id;
    if (id != 0)
        m_byID[id] = &folder;
}

void LibraryTree::setKey(TreeFolder& folder, FileKey key)
{
    release(m_byKey, folder.key, folder);
    if (TreeFolder* former = withKey(key); former && former != &folder)
        former->key = {};
    folder.key = key;
    if (key.isKnown())
        m_byKey[key] = &folder;
}

void LibraryTree::setWatch(TreeFolder& folder, int watch)
{
    release(m_byWatch, folder.watch, folder);
    if (TreeFolder* former = withWatch(watch); former && former != &folder)
        former->watch = -1;
    folder.watch = watch;
    if (watch >= 0)
        m_byWatch[watch] = &folder;
}

std::vector<TreeFolder*> LibraryTree::roots() const
{
    std::vector<TreeFolder*> there;
    for (const auto& root : m_roots) {
        if (root)
            there.push_back(root.get());
    }
    return there;
}

void LibraryTree::visit(TreeFolder& folder, const std::function<void(TreeFolder&)>& visitor)
{
    visitor(folder);
    for (const auto& child : folder.children)
        visit(*child, visitor);
}

void LibraryTree::visitAll(const std::function<void(TreeFolder&)>& visitor) const
{
    for (TreeFolder* root : roots())
        visit(*root, visitor);
}

} // namespace lamina
