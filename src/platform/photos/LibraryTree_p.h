#pragma once

#include "platform/photos/FolderWalk_p.h"
#include "platform/photos/LibraryRoots.h"
#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/index/PhotoRecords.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace lamina {

/// A folder that the library looks at.
struct TreeFolder {
    std::string path;
    std::string title; ///< its name as text
    TreeFolder* parent = nullptr;
    int depth = 0;           ///< 0: a root
    bool isPictures = false; ///< the first root, which is no album itself
    SmartFolder smart = SmartFolder::None;
    std::vector<std::unique_ptr<TreeFolder>> children; ///< in the order shown

    FolderID id = 0;       ///< set by the tree
    FileKey key;           ///< set by the tree
    int watch = -1;        ///< set by the tree
    bool isBlind = false;  ///< changes in it are not told
    bool isLost = false;   ///< its parent no longer has it; until the walk is over it may turn up elsewhere
    bool isQueued = false; ///< to be looked at in this round
    bool isWhole = false;  ///< marked to be listed, not only to have files looked at
    bool isNew = true;     ///< not listed yet

    /// Files that somebody has made and not closed yet, with their lengths when last asked.
    std::unordered_map<std::string, std::int64_t> writing;
    std::set<std::string> touched; ///< files to be looked at
};

/// All folders that the library looks at, below its roots. For one thread at a time.
class LibraryTree {
public:
    explicit LibraryTree(const LibraryRoots& roots);

    /// The roots' paths, whether they exist or not: pictures, further ones and the application's own folder, but for
    /// those that are in another one. Each once.
    const std::vector<std::string>& rootPaths() const { return m_rootPaths; }
    /// Takes over those of the index that are in or below a root.
    void load(std::vector<FolderRecord> records);

    /// The folder, or null.
    TreeFolder* at(const std::string& path) const { return find(m_byPath, path); }
    TreeFolder* withID(FolderID id) const { return find(m_byID, id); }
    TreeFolder* withKey(FileKey key) const { return find(m_byKey, key); }
    TreeFolder* withWatch(int watch) const { return find(m_byWatch, watch); }
    /// The folder that the path is in or names, as deep as the tree knows it; null outside the roots.
    TreeFolder* nearest(std::string path) const;

    /// Adds a root, or a folder to its parent, and gives it; one that is there stays.
    TreeFolder& addRoot(const std::string& path);
    TreeFolder& addChild(TreeFolder& parent, const std::string& name);
    /// Removes a folder with all beneath it.
    void remove(TreeFolder& folder);

    /// Each of these takes the value away from the folder that had it before.
    void setID(TreeFolder& folder, FolderID id);
    void setKey(TreeFolder& folder, FileKey key);
    void setWatch(TreeFolder& folder, int watch);

    /// The roots that are there, in their order.
    std::vector<TreeFolder*> roots() const;
    /// Every folder from this one on, parents first.
    static void visit(TreeFolder& folder, const std::function<void(TreeFolder&)>& visitor);
    void visitAll(const std::function<void(TreeFolder&)>& visitor) const;

private:
    template <class Map, class Key>
    static TreeFolder* find(const Map& map, const Key& key)
    {
        const auto found = map.find(key);
        return found == map.end() ? nullptr : found->second;
    }
    SmartFolder smartKind(const TreeFolder* parent, const std::string& path, std::string_view name) const;
    TreeFolder& enter(std::unique_ptr<TreeFolder>& folder, const std::string& path, std::string_view name);

    std::string m_pictures;
    std::string m_ownFolder;
    std::vector<std::string> m_rootPaths;
    std::vector<std::unique_ptr<TreeFolder>> m_roots; ///< beside `m_rootPaths`; null: not there
    std::unordered_map<std::string, TreeFolder*> m_byPath;
    std::unordered_map<FolderID, TreeFolder*> m_byID;
    std::unordered_map<FileKey, TreeFolder*, FileKeyHash> m_byKey;
    std::unordered_map<int, TreeFolder*> m_byWatch;
};

} // namespace lamina
