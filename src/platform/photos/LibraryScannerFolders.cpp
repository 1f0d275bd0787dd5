#include "platform/base/Log.h"
#include "platform/files/FileCauses.h"
#include "platform/photos/LibraryScanner_p.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <utility>

// The folders of a round: roots that come and go, a folder's children, and what stands for them in the index.

namespace lamina {

namespace {

/// Deeper than anybody sorts photos, and shorter than the longest path.
constexpr int kDeepest = 64;

/// Whether a folder that couldn't be listed has nothing for us. After any other failure it may well be as it was: a
/// disk that stumbles, a network that is away, too many open files.
bool isClosedToUs(const Error& error)
{
    return error.cause == cause::kNoSuchFolder ||
           std::ranges::any_of(std::array{ENOTDIR, EACCES, EPERM},
                               [&](int number) { return error.cause == readingFailure(number); });
}

} // namespace

void LibraryScanner::checkRoots()
{
    const auto former = std::exchange(m_anchors, {});
    for (const std::string& path : m_tree->rootPaths()) {
        anchor(path);
        checkRoot(path);
    }
    for (const std::string& path : m_watchedFiles) {
        if (const std::optional<int> watch = m_watch.add(parentPath(path), FolderWatch::Depth::Names))
            m_anchors[*watch].insert(path.substr(path.rfind('/') + 1));
    }
    for (const auto& [watch, names] : former) {
        if (!m_anchors.contains(watch) && !m_tree->withWatch(watch))
            m_watch.remove(watch);
    }
}

/// Watches the folder in which a root stands, or in which the first missing folder above it would be made.
void LibraryScanner::anchor(const std::string& path)
{
    constexpr int kMostTries = 2 * kDeepest;
    std::string name = path;
    for (int tries = 0; tries < kMostTries; ++tries) {
        const std::string above = parentPath(name);
        const std::optional<int> watch = m_watch.add(above, FolderWatch::Depth::Names);
        if (watch)
            m_anchors[*watch].insert(name.substr(name.rfind('/') + 1));
        if (watch ? name == path || !findFolder(name) : above.empty() || above == "/")
            return;
        // Up to what there is, and down again where it was made in between.
        name = watch ? path.substr(0, path.find('/', name.size() + 1)) : above;
    }
}

void LibraryScanner::checkRoot(const std::string& path)
{
    const std::optional<FileKey> key = findFolder(path);
    TreeFolder* root = m_tree->at(path);
    if (!key || isElsewhere(*key, path)) {
        if (root)
            root->isLost = true;
        return;
    }
    if (!root) {
        root = &m_tree->addRoot(path);
        m_isTreeChanged = true;
    }
    const bool wasLost = std::exchange(root->isLost, false);
    if ((root->isNew || wasLost || root->key != *key) && !std::exchange(root->isQueued, true)) {
        root->isWhole = true;
        m_queue.push_back(root);
    }
    if (root->id == 0 || root->key != *key) {
        m_tree->setKey(*root, *key);
        putFolders({root});
    }
}

/// Whether a folder is in the tree under another path, and still there: by a mount that shows it twice, or as a root
/// within another one.
bool LibraryScanner::isElsewhere(FileKey key, const std::string& path) const
{
    const TreeFolder* other = m_tree->withKey(key);
    if (!other || other->path == path)
        return false;
    const std::optional<FileKey> there = findFolder(other->path);
    return there && *there == key;
}

void LibraryScanner::look(TreeFolder& folder)
{
    if (std::exchange(folder.isWhole, false)) {
        folder.touched.clear();
        list(folder);
        return;
    }
    const std::set<std::string> names = std::exchange(folder.touched, {});
    if (names.empty())
        return;
    std::vector<ListedFile> files;
    for (const std::string& name : names) {
        if (std::optional<ListedFile> file = findFile(folder.path, name))
            files.push_back(std::move(*file));
    }
    compare(folder, files, &names);
}

void LibraryScanner::list(TreeFolder& folder)
{
    folder.isNew = false;
    watch(folder); // before the listing: what comes afterwards is told
    Result<FolderListing> listing = listFolder(folder.path);
    if (!listing) {
        reportUnreadable(folder, listing.error());
        if (!isClosedToUs(listing.error())) {
            folder.isBlind = true; // looked at again
            return;
        }
        FolderListing none;
        none.key = folder.key;
        listing = std::move(none);
    }
    folder.isBlind = folder.watch < 0 || listing->isRemote;
    if (listing->key != folder.key || folder.id == 0) {
        m_tree->setKey(folder, listing->key);
        putFolders({&folder});
    }
    takeChildren(folder, listing->folders);
    compare(folder, listing->files, nullptr);
}

void LibraryScanner::watch(TreeFolder& folder)
{
    const int former = folder.watch;
    m_tree->setWatch(folder, m_watch.add(folder.path, FolderWatch::Depth::Contents).value_or(-1));
    if (former >= 0 && former != folder.watch && !m_tree->withWatch(former) && !m_anchors.contains(former))
        m_watch.remove(former);
}

void LibraryScanner::reportUnreadable(TreeFolder& folder, const Error& error)
{
    if (error.cause != cause::kNoSuchFolder && m_reported.insert(folder.path).second)
        logWarning(error.message());
}

void LibraryScanner::takeChildren(TreeFolder& folder, const std::vector<ListedFolder>& listed)
{
    std::unordered_set<const TreeFolder*> there;
    std::vector<TreeFolder*> fresh;
    std::vector<TreeFolder*> queue;
    for (const ListedFolder& each : listed) {
        TreeFolder* child = takeChild(folder, each);
        if (!child)
            continue;
        there.insert(child);
        const bool wasLost = std::exchange(child->isLost, false);
        const bool isOther = child->id == 0 || child->key != each.key;
        if (isOther) {
            m_tree->setKey(*child, each.key);
            fresh.push_back(child);
        }
        if (isOther || wasLost || child->isNew)
            queue.push_back(child);
    }
    for (const auto& child : folder.children)
        child->isLost = child->isLost || !there.contains(child.get());
    putFolders(fresh);
    // By name, and before what waits: depth first.
    for (auto child = queue.rbegin(); child != queue.rend(); ++child) {
        (*child)->isWhole = true;
        if (!std::exchange((*child)->isQueued, true))
            m_queue.push_front(*child);
    }
}

/// The child of this name, a new one where there is none; null when it is not to be entered.
TreeFolder* LibraryScanner::takeChild(TreeFolder& folder, const ListedFolder& listed)
{
    const std::string path = pathIn(folder.path, listed.name);
    TreeFolder* child = m_tree->at(path);
    if (child && child->parent != &folder)
        return nullptr; // a root, which is looked at for itself
    if (isElsewhere(listed.key, path))
        return nullptr;
    if (folder.depth + 1 > kDeepest) {
        reportUnreadable(folder, {folder.path, "folders in it lie too deep for the photo library"});
        return nullptr;
    }
    if (!child)
        m_isTreeChanged = true;
    return child ? child : &m_tree->addChild(folder, listed.name);
}

/// Gives folders their rows in the index.
void LibraryScanner::putFolders(const std::vector<TreeFolder*>& folders)
{
    if (folders.empty())
        return;
    std::vector<FolderID> ids;
    m_index->write([&](PhotoIndex::Writer& writer) {
        ids.clear();
        for (const TreeFolder* folder : folders)
            ids.push_back(writer.putFolder({.path = folder->path, .key = folder->key}));
    });
    for (std::size_t i = 0; i < folders.size(); ++i) {
        if (folders[i]->id != 0 && folders[i]->id != ids[i])
            m_orphans.insert(folders[i]->id);
        m_orphans.erase(ids[i]);
        m_tree->setID(*folders[i], ids[i]);
    }
    m_isTreeChanged = true;
}

} // namespace lamina
