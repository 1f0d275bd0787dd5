// The library's engine over real folders, a real index and the kernel's own watch.
#include "CommandRunner.h"
#include "LogCapture.h"
#include "TestPaths.h"
#include "platform/photos/LibraryEngine_p.h"
#include "platform/photos/PhotoIndex_p.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Photos by their paths below the home.
using Shown = std::map<std::string, PhotoID>;

std::set<std::string> namesOf(const Shown& shown)
{
    std::set<std::string> names;
    for (const auto& [name, id] : shown)
        names.insert(name);
    return names;
}

/// An engine whose snapshots can be waited for.
class WatchedEngine {
public:
    explicit WatchedEngine(const LibraryRoots& roots, LibraryEngine::Limits limits = {})
        : m_engine(std::make_unique<LibraryEngine>(roots, limits))
    {
        m_engine->setChangeHandler([this](const LibraryChange& change) {
            const std::lock_guard lock(m_mutex);
            m_changes.push_back(change);
            m_latest = change.after;
            m_news.notify_all();
        });
        m_latest = m_engine->snapshot();
    }
    LibraryEngine* operator->() { return m_engine.get(); }

    /// Waits until a snapshot fulfils the condition.
    bool waitFor(const std::function<bool(const LibrarySnapshot&)>& condition)
    {
        std::unique_lock lock(m_mutex);
        return m_news.wait_for(lock, 20s, [&] { return condition(*m_latest); });
    }
    std::vector<LibraryChange> takeChanges()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_changes, {});
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_news;
    LibrarySnapshotPtr m_latest;
    std::vector<LibraryChange> m_changes;
    std::unique_ptr<LibraryEngine> m_engine; ///< last: its thread uses the others
};

/// A home with a folder for pictures and a place for caches.
class Home : public testing::Test {
protected:
    Home() { fs::create_directory(pictures()); }

    std::string at(const std::string& name) const { return m_home.path(name); }
    std::string pictures() const { return at("Pictures"); }
    LibraryRoots roots(std::vector<std::string> further = {}) const
    {
        return {pictures(), std::move(further), at("Pictures/Lamina"), at("cache")};
    }

    /// A photo without a date of its own, last written at this time; its folder is made.
    void addPhoto(const std::string& name, std::time_t written = 1'000'000'000) const
    {
        fs::create_directories(fs::path(at(name)).parent_path());
        fs::copy_file(testData("pictures/jpeg-420.jpg"), at(name), fs::copy_options::overwrite_existing);
        setTime(name, written);
    }
    void setTime(const std::string& name, std::time_t written) const
    {
        const timespec times[2] = {{written, 0}, {written, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, at(name).c_str(), times, 0), 0);
    }
    void move(const std::string& from, const std::string& to) const { fs::rename(at(from), at(to)); }

    /// What a snapshot has, as all callers find it.
    Shown shown(const LibrarySnapshot& snapshot) const
    {
        Shown result;
        for (const PhotoRecord& record : snapshot.index->records(*snapshot.all)) {
            const auto folder = snapshot.folderPaths->find(record.folder);
            const std::string path = folder == snapshot.folderPaths->end() ? "?" : folder->second;
            result[fs::path(path + '/' + record.name).lexically_relative(at(""))] = record.id;
        }
        return result;
    }
    bool waitForNames(WatchedEngine& engine, const std::set<std::string>& names) const
    {
        return engine.waitFor([&](const LibrarySnapshot& snapshot) {
            return snapshot.complete && snapshot.all->size() == names.size() && namesOf(shown(snapshot)) == names;
        });
    }

private:
    TemporaryFolder m_home;
};

struct ChangeCase {
    const char* name;
    std::function<void(const std::function<std::string(const std::string&)>& at)> change;
    std::set<std::string> expected;
    std::map<std::string, std::string> moved; ///< to where, from where: the same photo
};

class Change : public Home, public testing::WithParamInterface<ChangeCase> {};

TEST_P(Change, GivesTheRightPhotosAndKeepsTheirIdentifiers)
{
    for (const char* name :
         {"Pictures/loose.jpg", "Pictures/Trip/a.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/c.jpg"})
        addPhoto(name);
    WatchedEngine engine(roots());
    engine->waitUntilComplete();
    const Shown before = shown(*engine->snapshot());
    ASSERT_EQ(before.size(), 4U);
    GetParam().change([this](const std::string& name) { return at(name); });
    const auto isRight = [&](const Shown& after) {
        if (namesOf(after) != GetParam().expected)
            return false;
        return std::ranges::all_of(after, [&](const auto& photo) {
            const auto moved = GetParam().moved.find(photo.first);
            const auto former = before.find(moved == GetParam().moved.end() ? photo.first : moved->second);
            return former == before.end() || former->second == photo.second;
        });
    };
    EXPECT_TRUE(engine.waitFor([&](const LibrarySnapshot& snapshot) { return isRight(shown(snapshot)); }))
        << testing::PrintToString(before) << " became " << testing::PrintToString(shown(*engine->snapshot()));
}

const ChangeCase kChanges[] = {
    {"Added",
     [](const auto& at) { fs::copy(at("Pictures/loose.jpg"), at("Pictures/Trip/new.jpg")); },
     {"Pictures/loose.jpg", "Pictures/Trip/a.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/c.jpg",
      "Pictures/Trip/new.jpg"},
     {}},
    {"Renamed",
     [](const auto& at) { fs::rename(at("Pictures/Trip/a.jpg"), at("Pictures/Trip/z.jpg")); },
     {"Pictures/loose.jpg", "Pictures/Trip/z.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/c.jpg"},
     {{"Pictures/Trip/z.jpg", "Pictures/Trip/a.jpg"}}},
    {"Swapped",
     [](const auto& at) {
         fs::rename(at("Pictures/Trip/a.jpg"), at("Pictures/t.jpg"));
         fs::rename(at("Pictures/Trip/b.jpg"), at("Pictures/Trip/a.jpg"));
         fs::rename(at("Pictures/t.jpg"), at("Pictures/Trip/b.jpg"));
         fs::rename(at("Pictures/loose.jpg"), at("Pictures/last.jpg"));
     },
     {"Pictures/last.jpg", "Pictures/Trip/a.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/c.jpg"},
     {{"Pictures/Trip/a.jpg", "Pictures/Trip/b.jpg"}, {"Pictures/Trip/b.jpg", "Pictures/Trip/a.jpg"}}},
    {"MovedBetweenFolders",
     [](const auto& at) { fs::rename(at("Pictures/Trip/a.jpg"), at("Pictures/Other/a.jpg")); },
     {"Pictures/loose.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/c.jpg", "Pictures/Other/a.jpg"},
     {{"Pictures/Other/a.jpg", "Pictures/Trip/a.jpg"}}},
    {"MovedOver",
     [](const auto& at) { fs::rename(at("Pictures/Trip/a.jpg"), at("Pictures/Trip/b.jpg")); },
     {"Pictures/loose.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/c.jpg"},
     {{"Pictures/Trip/b.jpg", "Pictures/Trip/a.jpg"}}},
    {"MovedOut",
     [](const auto& at) { fs::rename(at("Pictures/Trip/a.jpg"), at("a.jpg")); },
     {"Pictures/loose.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/c.jpg"},
     {}},
    {"Deleted",
     [](const auto& at) { fs::remove(at("Pictures/Other/c.jpg")); },
     {"Pictures/loose.jpg", "Pictures/Trip/a.jpg", "Pictures/Trip/b.jpg"},
     {}},
    {"DeletedAndAnotherAdded",
     [](const auto& at) {
         fs::remove(at("Pictures/Other/c.jpg"));
         writeFile(at("Pictures/Other/d.jpg"), "not really a picture");
     },
     {"Pictures/loose.jpg", "Pictures/Trip/a.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/d.jpg"},
     {}},
    {"FolderRenamed",
     [](const auto& at) { fs::rename(at("Pictures/Trip"), at("Pictures/Journey")); },
     {"Pictures/loose.jpg", "Pictures/Journey/a.jpg", "Pictures/Journey/b.jpg", "Pictures/Other/c.jpg"},
     {{"Pictures/Journey/a.jpg", "Pictures/Trip/a.jpg"}, {"Pictures/Journey/b.jpg", "Pictures/Trip/b.jpg"}}},
    {"FolderMovedIntoAnother",
     [](const auto& at) { fs::rename(at("Pictures/Trip"), at("Pictures/Other/Trip")); },
     {"Pictures/loose.jpg", "Pictures/Other/Trip/a.jpg", "Pictures/Other/Trip/b.jpg", "Pictures/Other/c.jpg"},
     {{"Pictures/Other/Trip/a.jpg", "Pictures/Trip/a.jpg"}}},
    {"FoldersSwapped",
     [](const auto& at) {
         fs::rename(at("Pictures/Trip"), at("Pictures/t"));
         fs::rename(at("Pictures/Other"), at("Pictures/Trip"));
         fs::rename(at("Pictures/t"), at("Pictures/Other"));
     },
     {"Pictures/loose.jpg", "Pictures/Other/a.jpg", "Pictures/Other/b.jpg", "Pictures/Trip/c.jpg"},
     {{"Pictures/Other/a.jpg", "Pictures/Trip/a.jpg"}, {"Pictures/Trip/c.jpg", "Pictures/Other/c.jpg"}}},
    {"FolderDeleted",
     [](const auto& at) { fs::remove_all(at("Pictures/Trip")); },
     {"Pictures/loose.jpg", "Pictures/Other/c.jpg"},
     {}},
    {"HiddenAndNoPicture",
     [](const auto& at) {
         fs::copy(at("Pictures/loose.jpg"), at("Pictures/.hidden.jpg"));
         fs::copy(at("Pictures/loose.jpg"), at("Pictures/notes.txt"));
         fs::rename(at("Pictures/Other"), at("Pictures/.Other"));
     },
     {"Pictures/loose.jpg", "Pictures/Trip/a.jpg", "Pictures/Trip/b.jpg"},
     {}},
    {"NamesThatAreNoText",
     [](const auto& at) { fs::rename(at("Pictures/Trip/a.jpg"), at("Pictures/Trip/\xff\xfe.jpg")); },
     {"Pictures/loose.jpg", "Pictures/Trip/\xff\xfe.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/c.jpg"},
     {{"Pictures/Trip/\xff\xfe.jpg", "Pictures/Trip/a.jpg"}}},
    {"LinksToWhatIsThereOrNowhere",
     [](const auto& at) {
         fs::create_symlink(at("Pictures/Trip/a.jpg"), at("Pictures/again.jpg"));
         fs::create_hard_link(at("Pictures/Trip/b.jpg"), at("Pictures/b again.jpg"));
         fs::create_symlink(at("nowhere.jpg"), at("Pictures/nowhere.jpg"));
         fs::create_directory_symlink(at("Pictures"), at("Pictures/Trip/loop"));
         fs::copy(at("Pictures/loose.jpg"), at("outside.jpg"));
         fs::create_symlink(at("outside.jpg"), at("Pictures/from outside.jpg"));
     },
     {"Pictures/loose.jpg", "Pictures/Trip/a.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/c.jpg",
      "Pictures/from outside.jpg"},
     {}},
    {"TheSecondNameStays",
     [](const auto& at) {
         fs::create_hard_link(at("Pictures/Trip/b.jpg"), at("Pictures/b again.jpg"));
         fs::remove(at("Pictures/Trip/b.jpg"));
     },
     {"Pictures/loose.jpg", "Pictures/Trip/a.jpg", "Pictures/b again.jpg", "Pictures/Other/c.jpg"},
     {{"Pictures/b again.jpg", "Pictures/Trip/b.jpg"}}},
};

INSTANTIATE_TEST_SUITE_P(Engine, Change, testing::ValuesIn(kChanges),
                         [](const auto& tested) { return std::string(tested.param.name); });

} // namespace
} // namespace lamina::test
