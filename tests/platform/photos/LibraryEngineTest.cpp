// The library's engine over real folders, a real index and the kernel's own watch.
#include "CommandRunner.h"
#include "LogCapture.h"
#include "TestPaths.h"
#include "platform/files/FileReading.h"
#include "platform/photos/LibraryEngine_p.h"
#include "platform/photos/index/PhotoIndex.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <sys/mount.h>
#include <sys/resource.h>
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
            std::unique_lock lock(m_mutex);
            m_changes.push_back(change);
            m_latest = change.after;
            m_isStanding = m_standsStill;
            m_news.notify_all();
            m_news.wait(lock, [this] { return !m_standsStill; });
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
    /// Waits until a photo is said to have changed.
    bool waitUntilTold(PhotoID photo)
    {
        std::unique_lock lock(m_mutex);
        const auto tells = [&](const LibraryChange& change) {
            return std::ranges::find(change.changed, photo) != change.changed.end();
        };
        return m_news.wait_for(lock, 20s, [&] { return std::ranges::any_of(m_changes, tells); });
    }
    /// Runs `body` while the engine's thread waits in the handler of the next change.
    void standStill(const std::function<void()>& body)
    {
        std::unique_lock lock(m_mutex);
        m_standsStill = true;
        ASSERT_TRUE(m_news.wait_for(lock, 20s, [&] { return m_isStanding; }));
        lock.unlock();
        body();
        lock.lock();
        m_standsStill = false;
        m_news.notify_all();
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
    bool m_standsStill = false;
    bool m_isStanding = false;
    std::unique_ptr<LibraryEngine> m_engine; ///< last: its thread uses the others
};

/// A home with a folder for pictures and a place for caches.
class Home : public testing::Test {
protected:
    Home()
    {
        ::setenv("LAMINA_MODULES", LAMINA_MODULES, 1);
        fs::create_directory(pictures());
    }

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
    WatchedEngine engine(roots(), {.idle = 300ms});
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
    for (const auto& [to, from] : GetParam().moved)
        EXPECT_TRUE(engine.waitUntilTold(before.at(from))) << from;
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
    {"FolderMadeAgain", // many file systems give the new one the number of the old one
     [](const auto& at) {
         fs::remove_all(at("Pictures/Trip"));
         fs::create_directory(at("Pictures/Trip"));
         fs::copy(at("Pictures/loose.jpg"), at("Pictures/Trip/e.jpg"));
     },
     {"Pictures/loose.jpg", "Pictures/Trip/e.jpg", "Pictures/Other/c.jpg"},
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
    {"RenamedBesideASecondName",
     [](const auto& at) {
         fs::rename(at("Pictures/Trip/a.jpg"), at("Pictures/Trip/c.jpg"));
         fs::create_hard_link(at("Pictures/Trip/b.jpg"), at("Pictures/Trip/d.jpg"));
     },
     {"Pictures/loose.jpg", "Pictures/Trip/c.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/c.jpg"},
     {{"Pictures/Trip/c.jpg", "Pictures/Trip/a.jpg"}}},
    {"ANewFilesSecondNameStays",
     [](const auto& at) {
         fs::copy(at("Pictures/loose.jpg"), at("Pictures/new.jpg"));
         fs::create_hard_link(at("Pictures/new.jpg"), at("Pictures/newer.jpg"));
         fs::remove(at("Pictures/new.jpg"));
     },
     {"Pictures/loose.jpg", "Pictures/Trip/a.jpg", "Pictures/Trip/b.jpg", "Pictures/Other/c.jpg", "Pictures/newer.jpg"},
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

TEST_F(Home, ShowsFoldersAsAPersonKnowsThem)
{
    for (const char* name : {"Pictures/loose.jpg", "Pictures/DCIM/Camera/1.jpg", "Pictures/DCIM/Camera/Burst/2.jpg",
                             "Pictures/day 10/3.jpg", "Pictures/Day 9/4.jpg", "Pictures/Lists/inner/deep/5.jpg",
                             "Pictures/Lists/Camera/6.jpg", "Pictures/Lamina/7.jpg", "Pictures/bildschirmfotos/8.jpg",
                             "Card/9.jpg", "Card/Kamera/10.jpg"})
        addPhoto(name);
    fs::create_directories(at("Pictures/Empty/within"));
    WatchedEngine engine(roots({at("Card"), at("Pictures/Lists"), pictures(), "relative", at("missing")}));
    engine->waitUntilComplete();
    const LibrarySnapshotPtr snapshot = engine->snapshot();
    std::vector<std::string> lines;
    for (const LibraryFolder& folder : snapshot->folders) {
        const std::string parent = folder.parent < 0 ? "" : snapshot->folders[std::size_t(folder.parent)].title + '/';
        lines.push_back(parent + folder.title + ' ' + std::to_string(folder.photos->size()) + ' ' +
                        std::to_string(static_cast<int>(folder.smart)));
    }
    const std::vector<std::string> expected{
        "Day 9 1 0", "day 10 1 0", "Lists 0 0",        "Lists/Camera 1 0", "Lists/inner 0 0",     "inner/deep 1 0",
        "Card 1 0",  "Camera 1 1", "Camera/Burst 1 1", "Kamera 1 1",       "bildschirmfotos 1 2", "Lamina 1 3"};
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(snapshot->all->size(), 11U);
    EXPECT_EQ(snapshot->camera->size(), 3U);
    EXPECT_EQ(snapshot->screenshots->size(), 1U);
    EXPECT_EQ(snapshot->lamina->size(), 1U);
}

TEST_F(Home, IsThereAtOnceWithTheNextStart)
{
    // As the files say, whatever the clock says: times to come, and before 1970.
    addPhoto("Pictures/old.jpg", -86400);
    addPhoto("Pictures/A/future.jpg", 4'000'000'000);
    addPhoto("Pictures/A/same.jpg", 1'000'000'000);
    addPhoto("Pictures/A/same2.jpg", 1'000'000'000);
    PhotoIDs all;
    {
        WatchedEngine engine(roots());
        engine->waitUntilComplete();
        all = engine->snapshot()->all;
        const std::vector<PhotoRecord> records = engine->snapshot()->index->records(*all);
        ASSERT_EQ(records.size(), 4U);
        EXPECT_EQ(records.front().name, "future.jpg");
        EXPECT_EQ(records.back().name, "old.jpg");
        EXPECT_LT(all->at(1), all->at(2));
        EXPECT_EQ(records.back().date, -86400);
        EXPECT_GT(records.back().width, 0);
    }
    // Meanwhile one is changed, one is moved with its folder, one is deleted.
    fs::resize_file(at("Pictures/old.jpg"), 100);
    move("Pictures/A", "Pictures/B");
    fs::remove(at("Pictures/B/same.jpg"));
    WatchedEngine engine(roots());
    std::vector<LibraryChange> changes = engine.takeChanges();
    EXPECT_EQ(*(changes.empty() ? engine->snapshot() : changes.front().before)->all, *all);
    EXPECT_TRUE(waitForNames(engine, {"Pictures/old.jpg", "Pictures/B/future.jpg", "Pictures/B/same2.jpg"}));
    for (const PhotoID photo : *engine->snapshot()->all)
        EXPECT_NE(std::ranges::find(*all, photo), all->end());
    const std::vector<PhotoRecord> records = engine->snapshot()->index->records(*all);
    EXPECT_EQ(records.back().width, 0); // cut to less than its header
}

TEST_F(Home, ReadsNothingAgainUnderAnotherKey)
{
    addPhoto("Pictures/1.jpg");
    Shown before;
    {
        WatchedEngine engine(roots());
        engine->waitUntilComplete();
        before = shown(*engine->snapshot());
    }
    // A card that is put in again, by all that is asked: what would be read is no picture.
    writeFile(at("1.jpg"), std::string(fs::file_size(at("Pictures/1.jpg")), ' '));
    setTime("1.jpg", 1'000'000'000);
    move("1.jpg", "Pictures/1.jpg");
    WatchedEngine engine(roots());
    engine->waitUntilComplete();
    const LibrarySnapshotPtr after = engine->snapshot();
    EXPECT_EQ(shown(*after), before);
    const PhotoRecord record = after->index->records(*after->all).at(0);
    EXPECT_GT(record.width, 0);
    EXPECT_EQ(after->index->find(record.key)->id, record.id);
    struct stat status {};
    ASSERT_EQ(::stat(at("Pictures/1.jpg").c_str(), &status), 0);
    EXPECT_EQ(record.key.inode, status.st_ino);
    for (const LibraryChange& change : engine.takeChanges())
        EXPECT_TRUE(change.changed.empty());
}

TEST_F(Home, ListsAFileWhenItIsClosed)
{
    WatchedEngine engine(roots());
    engine->waitUntilComplete();
    const std::string photo = readFile(testData("pictures/jpeg-420.jpg"));
    {
        const FileDescriptor file(::open(at("Pictures/slow.jpg").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
        ASSERT_GT(::write(file.get(), photo.data(), 100), 0);
        // Another one comes and goes meanwhile, which makes the folder known anew.
        addPhoto("Pictures/New/quick.jpg");
        writeFile(at("Pictures/empty.jpg"), "");
        EXPECT_TRUE(waitForNames(engine, {"Pictures/New/quick.jpg"}));
    }
    EXPECT_TRUE(waitForNames(engine, {"Pictures/New/quick.jpg", "Pictures/slow.jpg"}));
    const PhotoID slow = shown(*engine->snapshot()).at("Pictures/slow.jpg");
    engine.takeChanges();
    writeFile(at("Pictures/slow.jpg"), photo);
    EXPECT_TRUE(engine.waitFor([&](const LibrarySnapshot& snapshot) {
        return snapshot.index->records({{slow}}).front().width > 0 && snapshot.complete;
    }));
    EXPECT_TRUE(engine.waitFor([&](const LibrarySnapshot&) { return true; }));
    std::vector<PhotoID> changed;
    for (const LibraryChange& change : engine.takeChanges())
        changed.insert(changed.end(), change.changed.begin(), change.changed.end());
    EXPECT_EQ(changed, std::vector<PhotoID>{slow});
}

TEST_F(Home, TakesHundredsInFewSteps)
{
    const auto names = [&](const std::string& folder) {
        std::set<std::string> all;
        for (int i = 0; i < 700; ++i) // more than are written together
            all.insert(folder + std::to_string(i) + ".jpg");
        return all;
    };
    WatchedEngine engine(roots());
    engine->waitUntilComplete();
    for (const std::string& name : names("aside/"))
        addPhoto(name);
    fs::create_directory(at("links"));
    for (int i = 0; i < 700; i += 70)
        fs::create_hard_link(at("aside/" + std::to_string(i) + ".jpg"), at("links/" + std::to_string(i) + ".jpg"));
    engine.takeChanges();
    move("aside", "Pictures/aside");
    ASSERT_TRUE(waitForNames(engine, names("Pictures/aside/")));
    const Shown before = shown(*engine->snapshot());
    const auto rename = [&](const std::string& from, const std::string& to) {
        for (int i = 0; i < 700; ++i)
            move(from + std::to_string(i) + ".jpg", to + std::to_string(i) + ".jpg");
        EXPECT_TRUE(waitForNames(engine, names(to)));
    };
    rename("Pictures/aside/", "Pictures/aside/b ");
    rename("Pictures/aside/b ", "Pictures/aside/");
    EXPECT_EQ(shown(*engine->snapshot()), before);
    move("Pictures/aside", "aside");
    ASSERT_TRUE(waitForNames(engine, {}));
    // As a card that is put in again: the same files under other keys.
    fs::copy(at("aside"), at("Pictures/aside"));
    for (const std::string& name : names("Pictures/aside/"))
        setTime(name, 1'000'000'000);
    ASSERT_TRUE(waitForNames(engine, names("Pictures/aside/")));
    EXPECT_EQ(shown(*engine->snapshot()), before);
    EXPECT_LE(engine.takeChanges().size(), names("Pictures/aside/").size() / 4); // a slow machine takes more of them
}

TEST_F(Home, FindsEverythingAgainWhenChangesWereLost)
{
    std::ifstream limit("/proc/sys/fs/inotify/max_queued_events");
    int mostEvents = 0;
    limit >> mostEvents;
    addPhoto("Pictures/first.jpg");
    addPhoto("Pictures/Trip/gone.jpg");
    WatchedEngine engine(roots());
    engine->waitUntilComplete();
    addPhoto("Pictures/second.jpg");
    engine.standStill([&] {
        for (int i = 0; i < mostEvents; ++i)
            move(i % 2 == 0 ? "Pictures/first.jpg" : "Pictures/other.jpg",
                 i % 2 == 0 ? "Pictures/other.jpg" : "Pictures/first.jpg");
        fs::remove(at("Pictures/Trip/gone.jpg"));
        addPhoto("Pictures/New/third.jpg");
    });
    EXPECT_TRUE(waitForNames(engine, {"Pictures/first.jpg", "Pictures/second.jpg", "Pictures/New/third.jpg"}));
}

TEST_F(Home, TakesRootsThatComeAndGo)
{
    fs::remove(pictures());
    addPhoto("cards/card/1.jpg");
    fs::create_directory_symlink(at("cards/card"), at("link"));
    WatchedEngine engine(roots({at("link"), at("later/on/here")}));
    engine->waitUntilComplete();
    EXPECT_TRUE(waitForNames(engine, {"link/1.jpg"}));
    const Shown first = shown(*engine->snapshot());
    addPhoto("Pictures/Trip/2.jpg");
    EXPECT_TRUE(waitForNames(engine, {"link/1.jpg", "Pictures/Trip/2.jpg"}));
    addPhoto("later/on/here/3.jpg");
    EXPECT_TRUE(waitForNames(engine, {"link/1.jpg", "Pictures/Trip/2.jpg", "later/on/here/3.jpg"}));
    move("link", "away");
    move("later/on", "later/off");
    EXPECT_TRUE(waitForNames(engine, {"Pictures/Trip/2.jpg"}));
    move("away", "link");
    EXPECT_TRUE(waitForNames(engine, {"link/1.jpg", "Pictures/Trip/2.jpg"}));
    EXPECT_EQ(shown(*engine->snapshot()).at("link/1.jpg"), first.at("link/1.jpg"));
    engine->configure(roots({at("later/off/here")}));
    engine->waitUntilComplete();
    EXPECT_EQ(namesOf(shown(*engine->snapshot())),
              (std::set<std::string>{"Pictures/Trip/2.jpg", "later/off/here/3.jpg"}));
}

/// A file system of its own over a folder.
class Card {
public:
    explicit Card(std::string folder)
        : m_folder(std::move(folder))
    {
    }
    ~Card() { takeOut(); }
    Card(const Card&) = delete;
    Card& operator=(const Card&) = delete;
    bool putIn() const { return mount("none", m_folder.c_str(), "tmpfs", 0, nullptr) == 0; }
    void takeOut() const { umount2(m_folder.c_str(), MNT_DETACH); }

private:
    std::string m_folder;
};

TEST_F(Home, HearsOfACardThatIsPutInOverItsFolder)
{
    fs::create_directory(at("Pictures/My card"));
    const Card card(at("Pictures/My card"));
    if (!card.putIn())
        GTEST_SKIP() << "nothing may be mounted here";
    addPhoto("Pictures/My card/1.jpg");
    addPhoto("Pictures/2.jpg");
    WatchedEngine engine(roots());
    engine->waitUntilComplete();
    const Shown before = shown(*engine->snapshot());
    EXPECT_EQ(before.size(), 2U);
    card.takeOut();
    EXPECT_TRUE(waitForNames(engine, {"Pictures/2.jpg"}));
    ASSERT_TRUE(card.putIn());
    addPhoto("Pictures/My card/1.jpg");
    EXPECT_TRUE(waitForNames(engine, namesOf(before)));
    EXPECT_EQ(shown(*engine->snapshot()), before);
}

TEST_F(Home, LooksAgainWhereItCannotWatch)
{
    addPhoto("Pictures/A/1.jpg");
    addPhoto("Pictures/B/2.jpg");
    setTime("Pictures/B", 1'000'000'000);
    const LogCapture log;
    WatchedEngine engine(roots(), {.watches = 3}); // home, Pictures and A
    engine->waitUntilComplete();
    fs::resize_file(at("Pictures/B/2.jpg"), 100); // which the folder doesn't show
    engine->rescan();
    const PhotoID cut = shown(*engine->snapshot()).at("Pictures/B/2.jpg");
    EXPECT_TRUE(engine.waitFor(
        [&](const LibrarySnapshot& snapshot) { return snapshot.index->records({{cut}}).front().width == 0; }));
    addPhoto("Pictures/B/3.jpg");
    addPhoto("Pictures/B/C/4.jpg");
    addPhoto("Pictures/A/5.jpg");
    EXPECT_TRUE(waitForNames(engine, {"Pictures/A/1.jpg", "Pictures/A/5.jpg", "Pictures/B/2.jpg"}));
    engine->rescan();
    EXPECT_TRUE(waitForNames(engine, {"Pictures/A/1.jpg", "Pictures/A/5.jpg", "Pictures/B/2.jpg", "Pictures/B/3.jpg",
                                      "Pictures/B/C/4.jpg"}));
    EXPECT_EQ(log.messages.size(), 1U) << log.text();
}

TEST_F(Home, SkipsWhatItMayNotRead)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "everything can be read by root";
    addPhoto("Pictures/A/1.jpg");
    addPhoto("Pictures/B/2.jpg");
    fs::permissions(at("Pictures/B"), fs::perms::none);
    const LogCapture log;
    WatchedEngine engine(roots());
    engine->waitUntilComplete();
    EXPECT_TRUE(waitForNames(engine, {"Pictures/A/1.jpg"}));
    fs::permissions(at("Pictures/B"), fs::perms::owner_all);
    EXPECT_TRUE(waitForNames(engine, {"Pictures/A/1.jpg", "Pictures/B/2.jpg"}));
    EXPECT_EQ(log.messages.size(), 1U) << log.text();
}

TEST_F(Home, KeepsWhatCannotBeListedAtTheMoment)
{
    addPhoto("Pictures/A/B/1.jpg");
    addPhoto("Pictures/Z/2.jpg");
    const LogCapture log;
    WatchedEngine engine(roots());
    engine->waitUntilComplete();
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit nothing{3, limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &nothing), 0);
    fs::permissions(at("Pictures/A"), fs::perms::owner_all); // has it listed
    move("Pictures/Z/2.jpg", "Pictures/Z/3.jpg");
    EXPECT_TRUE(waitForNames(engine, {"Pictures/A/B/1.jpg", "Pictures/Z/3.jpg"}));
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    move("Pictures/Z/3.jpg", "Pictures/Z/4.jpg"); // after the round that couldn't
    EXPECT_TRUE(waitForNames(engine, {"Pictures/A/B/1.jpg", "Pictures/Z/4.jpg"}));
    EXPECT_EQ(log.messages.size(), 1U) << log.text();
}

TEST_F(Home, SharesItsIndexWithAnother)
{
    addPhoto("Pictures/1.jpg");
    addPhoto("Card/2.jpg");
    WatchedEngine first(roots());
    WatchedEngine second(roots({at("Card")}));
    first->waitUntilComplete();
    second->waitUntilComplete();
    fs::remove(at("Pictures/1.jpg"));
    for (int i = 3; i < 60; ++i)
        addPhoto("Pictures/Trip/" + std::to_string(i) + ".jpg");
    move("Pictures/Trip/3.jpg", "Pictures/1.jpg");
    const auto isDone = [](std::size_t count) {
        return [count](const LibrarySnapshot& snapshot) { return snapshot.all->size() == count; };
    };
    EXPECT_TRUE(first.waitFor(isDone(57)));
    EXPECT_TRUE(second.waitFor(isDone(58)));
    Shown both = shown(*second->snapshot());
    EXPECT_EQ(both.erase("Card/2.jpg"), 1U);
    EXPECT_EQ(shown(*first->snapshot()), both);
}

TEST_F(Home, TellsOfAnAdoptedFileWhenItIsLetGo)
{
    WatchedEngine engine(roots());
    engine->waitUntilComplete();
    WatchedEngine witness(roots()); // as another process, with the same index
    witness->waitUntilComplete();
    const LibrarySnapshotPtr before = engine->snapshot();
    const PhotoID reserved = before->index->reserve();
    {
        const LibraryEngine::Hold hold = engine->holdChanges();
        addPhoto("Pictures/Lamina/new.jpg");
        // Somebody who is not held has found them.
        EXPECT_TRUE(waitForNames(witness, {"Pictures/Lamina/new.jpg"}));
        addPhoto("Pictures/other.jpg");
        EXPECT_TRUE(waitForNames(witness, {"Pictures/Lamina/new.jpg", "Pictures/other.jpg"}));
        const Result<PhotoID> adopted = engine->adopt(reserved, at("Pictures/Lamina/new.jpg"));
        ASSERT_TRUE(adopted);
        EXPECT_EQ(*adopted, reserved);
        EXPECT_FALSE(engine->adopt(reserved, at("Pictures/Lamina/none.jpg")));
        EXPECT_EQ(engine->snapshot(), before);
        EXPECT_TRUE(witness.waitFor(
            [&](const LibrarySnapshot& snapshot) { return *snapshot.lamina == std::vector<PhotoID>{reserved}; }));
    }
    EXPECT_TRUE(waitForNames(engine, {"Pictures/Lamina/new.jpg", "Pictures/other.jpg"}));
    EXPECT_EQ(*engine->snapshot()->lamina, std::vector<PhotoID>{reserved});
    EXPECT_EQ(shown(*witness->snapshot()), shown(*engine->snapshot()));
}

TEST_F(Home, ShowsLooseFilesUntilTheyAreGone)
{
    addPhoto("Pictures/1.jpg");
    addPhoto("desk/loose.jpg", 2'000'000'000);
    writeFile(at("notes.txt"), "text");
    WatchedEngine engine(roots());
    engine->waitUntilComplete();
    std::promise<std::vector<PhotoID>> answer;
    engine->addLooseFiles(
        {at("desk/loose.jpg"), at("Pictures/1.jpg"), at("notes.txt"), at("desk/loose.jpg"), at("none.jpg")},
        [&](std::vector<PhotoID> photos) { answer.set_value(std::move(photos)); });
    const std::vector<PhotoID> photos = answer.get_future().get();
    const LibrarySnapshotPtr snapshot = engine->snapshot();
    ASSERT_EQ(snapshot->looseFiles->size(), 1U);
    const LooseFile& loose = snapshot->looseFiles->front();
    EXPECT_EQ(photos, (std::vector<PhotoID>{loose.id, shown(*snapshot).at("Pictures/1.jpg"), 0, loose.id, 0}));
    EXPECT_EQ(*snapshot->all, (std::vector<PhotoID>{loose.id, photos[1]}));
    EXPECT_TRUE(loose.path == at("desk/loose.jpg") && loose.width > 0);
    fs::remove(at("desk/loose.jpg"));
    EXPECT_TRUE(waitForNames(engine, {"Pictures/1.jpg"}));
    EXPECT_TRUE(engine->snapshot()->looseFiles->empty());
}

} // namespace
} // namespace lamina::test
