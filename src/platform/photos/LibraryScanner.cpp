#include "platform/photos/LibraryScanner_p.h"

#include <algorithm>
#include <optional>
#include <sys/inotify.h>
#include <utility>

namespace lamina {

namespace {

/// Files that wait for their facts before the walk rests: some megabytes at most.
constexpr std::size_t kMostReading = 4096;

} // namespace

LibraryScanner::LibraryScanner(std::shared_ptr<PhotoIndex> index, std::size_t mostWatches, std::function<void()> wake)
    : m_index(std::move(index))
    , m_watch(mostWatches)
    , m_facts(std::move(wake))
{
}

LibraryScanner::~LibraryScanner() = default;

void LibraryScanner::load(const LibraryRoots& roots)
{
    if (m_tree)
        m_tree->visitAll([&](TreeFolder& folder) { m_watch.remove(folder.watch); });
    m_marked.clear();
    m_queue.clear();
    m_missing.clear();
    m_orphans.clear();
    m_reading.clear();
    m_readingPaths.clear();
    m_doubles.clear();
    m_jobs.clear();
    flush();
    m_tree = std::make_unique<LibraryTree>(roots);
    std::vector<FolderRecord> folders = m_index->folders();
    m_isNewIndex = folders.empty();
    m_tree->load(std::move(folders));
    std::vector<PhotoPlace> places = m_index->photos();
    std::erase_if(places, [&](const PhotoPlace& place) { return m_tree->withID(place.folder) == nullptr; });
    m_places = LibraryPlaces(std::move(places));
    m_isTreeChanged = true;
    touchAll();
}

// Marks.

void LibraryScanner::mark(TreeFolder& folder, bool wholly)
{
    folder.isWhole = folder.isWhole || wholly;
    m_marked.insert(&folder);
}

void LibraryScanner::markParent(const TreeFolder& folder)
{
    if (folder.parent)
        mark(*folder.parent, true);
    else
        m_checksRoots = true;
}

void LibraryScanner::touch(const std::string& path)
{
    TreeFolder* folder = m_tree->at(parentPath(path));
    if (folder)
        folder->touched.insert(path.substr(path.rfind('/') + 1));
    else
        folder = m_tree->nearest(path);
    if (folder)
        mark(*folder, folder->path != parentPath(path));
    else
        m_checksRoots = true;
}

void LibraryScanner::touchBlind()
{
    m_checksRoots = true;
    m_tree->visitAll([&](TreeFolder& folder) {
        if (!folder.isBlind)
            return;
        // A file that is written in place leaves its folder's time as it was.
        if (findFolder(folder.path))
            mark(folder, true);
        else
            markParent(folder);
    });
}

void LibraryScanner::watchFiles(std::vector<std::string> paths)
{
    m_watchedFiles = std::move(paths);
    m_checksRoots = true;
}

void LibraryScanner::touchAll()
{
    m_checksRoots = true;
    m_tree->visitAll([&](TreeFolder& folder) {
        folder.writing.clear();
        mark(folder, true);
    });
}

void LibraryScanner::touchIdle()
{
    m_hasWriting = false;
    m_tree->visitAll([&](TreeFolder& folder) {
        for (auto each = folder.writing.begin(); each != folder.writing.end();) {
            const std::optional<ListedFile> file = findFile(folder.path, each->first);
            const std::int64_t length = file ? file->bytes : 0;
            if (std::exchange(each->second, length) != length) {
                ++each;
                continue;
            }
            folder.touched.insert(each->first);
            mark(folder, false);
            each = folder.writing.erase(each);
        }
        m_hasWriting = m_hasWriting || !folder.writing.empty();
    });
}

bool LibraryScanner::readEvents(bool isMounted)
{
    const std::vector<WatchEvent> events = m_watch.read();
    for (const WatchEvent& event : events)
        takeEvent(event);
    const std::vector<std::string> points = isMounted ? m_mounts.takeChanges() : std::vector<std::string>();
    for (const std::string& point : points)
        takeMount(point);
    return !events.empty() || !points.empty();
}

/// Something else lies at this path now: on a folder that we know, in one, or with a root in it.
void LibraryScanner::takeMount(const std::string& point)
{
    TreeFolder* folder = m_tree->nearest(point);
    if (folder)
        mark(*folder, true);
    const auto isBeneath = [&](const std::string& root) { return root.starts_with(point); };
    m_checksRoots = m_checksRoots || !folder || std::ranges::any_of(m_tree->rootPaths(), isBeneath);
}

void LibraryScanner::takeEvent(const WatchEvent& event)
{
    if (event.isOverflow()) {
        touchAll();
        return;
    }
    if (const auto anchor = m_anchors.find(event.watch); anchor != m_anchors.end()) {
        m_checksRoots = m_checksRoots || event.name.empty() || anchor->second.contains(event.name);
        if (event.isEnd())
            m_anchors.erase(anchor);
    }
    TreeFolder* folder = m_tree->withWatch(event.watch);
    if (!folder)
        return;
    if (event.isEnd()) {
        // One that is made again at once may have its number, and nobody would tell of what is in it.
        m_tree->setWatch(*folder, -1);
        mark(*folder, true);
    }
    if (event.name.empty() || event.isOfFolder())
        takeFolderEvent(*folder, event);
    else if (isPhotoName(event.name))
        takeFileEvent(*folder, event);
}

void LibraryScanner::takeFolderEvent(TreeFolder& folder, const WatchEvent& event)
{
    if (event.name.empty() && (event.mask & IN_ATTRIB) == 0) {
        markParent(folder);
    } else if (event.name.empty()) {
        mark(folder, true);
    } else if (!event.name.starts_with('.')) {
        // Another mode lets us in, or keeps us out; a watch of its own needs that it may be read.
        TreeFolder* child = (event.mask & IN_ATTRIB) != 0 ? m_tree->at(pathIn(folder.path, event.name)) : nullptr;
        mark(child ? *child : folder, true);
    }
}

void LibraryScanner::takeFileEvent(TreeFolder& folder, const WatchEvent& event)
{
    if ((event.mask & IN_CREATE) != 0) {
        // A new name of a file that stands already is never closed; anything else is waited for.
        const std::optional<ListedFile> file = findFile(folder.path, event.name);
        if (!file || !(file->mayRepeat || isKnown(*file))) {
            folder.writing[event.name] = -1;
            m_hasWriting = true;
            return;
        }
    } else if ((event.mask & IN_ATTRIB) == 0) {
        folder.writing.erase(event.name);
    }
    folder.touched.insert(event.name);
    mark(folder, false);
}

// Rounds.

void LibraryScanner::beginRound()
{
    m_isRound = true;
    std::vector<TreeFolder*> marked(m_marked.begin(), m_marked.end());
    m_marked.clear();
    std::ranges::sort(marked, {}, &TreeFolder::path);
    for (TreeFolder* folder : marked) {
        if (!std::exchange(folder->isQueued, true))
            m_queue.push_back(folder);
    }
    if (std::exchange(m_checksRoots, false))
        checkRoots();
}

bool LibraryScanner::step()
{
    takeFacts();
    if (!m_queue.empty() && m_facts.pending() < kMostReading) {
        TreeFolder* folder = m_queue.front();
        m_queue.pop_front();
        folder->isQueued = false;
        look(*folder);
        if (!m_jobs.empty())
            m_facts.submit(std::exchange(m_jobs, {}));
        return true;
    }
    if (!m_queue.empty() || !m_isRound)
        return false;
    flush();
    endRound();
    return true;
}

bool LibraryScanner::isSettled() const
{
    return !m_isRound && m_queue.empty() && m_reading.empty() && m_writes.empty();
}

void LibraryScanner::endRound()
{
    m_isRound = false;
    m_isNewIndex = false;
    const std::vector<TreeFolder*> lost = lostFolders();
    if (!lost.empty() || !m_missing.empty() || !m_orphans.empty())
        takeAway(lost);
}

std::vector<TreeFolder*> LibraryScanner::lostFolders() const
{
    std::vector<TreeFolder*> lost;
    m_tree->visitAll([&](TreeFolder& folder) {
        if (folder.isLost)
            lost.push_back(&folder);
    });
    return lost;
}

void LibraryScanner::takeAway(const std::vector<TreeFolder*>& lost)
{
    std::unordered_set<FolderID> folders = std::exchange(m_orphans, {});
    for (TreeFolder* root : lost)
        LibraryTree::visit(*root, [&](TreeFolder& folder) { folders.insert(folder.id); });
    folders.erase(0);
    std::vector<PhotoID> photos;
    std::vector<FileKey> keys;
    for (const PhotoRecord& record : gonePhotos()) {
        photos.push_back(record.id);
        keys.push_back(record.key);
    }
    if (!m_doubles.empty()) {
        for (const FolderID folder : folders) {
            for (const PhotoRecord& record : m_index->photosInFolder(folder))
                keys.push_back(record.key);
        }
    }
    m_missing.clear();
    m_index->write([&](PhotoIndex::Writer& writer) {
        writer.markGone(photos);
        for (const FolderID folder : folders)
            writer.removeFolder(folder);
    });
    for (const PhotoID photo : photos)
        m_places.remove(photo);
    if (!folders.empty())
        m_places.removeFrom(folders);
    // From the deepest up: one goes with what is beneath it.
    for (auto folder = lost.rbegin(); folder != lost.rend(); ++folder)
        remove(**folder);
    wakeDoubles(keys);
}

void LibraryScanner::remove(TreeFolder& folder)
{
    LibraryTree::visit(folder, [&](TreeFolder& each) {
        m_marked.erase(&each);
        if (each.watch >= 0 && !m_anchors.contains(each.watch))
            m_watch.remove(each.watch);
    });
    m_tree->remove(folder);
    m_isTreeChanged = true;
}

/// Files that are gone may be there under another name: that is looked for at once.
void LibraryScanner::wakeDoubles(const std::vector<FileKey>& keys)
{
    for (const FileKey& key : keys) {
        const auto doubles = m_doubles.find(key);
        if (doubles == m_doubles.end())
            continue;
        for (const std::string& path : doubles->second)
            touch(path);
        m_doubles.erase(doubles);
    }
    if (!m_marked.empty())
        beginRound();
}

} // namespace lamina
