// The index of the photo library: real files, read and damaged with other eyes.
#include "platform/photos/index/PhotoIndex.h"
#include "CommandRunner.h"
#include "LogCapture.h"
#include "platform/files/PrivateFolder.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::uint64_t kDevice = 64768;

FolderRecord folderAt(const std::string& path, std::uint64_t inode)
{
    return {0, path, {kDevice, inode}};
}

/// `content` tells its time and length.
PhotoRecord photo(FolderID folder, const std::string& name, std::uint64_t inode, int content, double date = 0)
{
    return {0, folder, name, {kDevice, inode}, content * 1000, content, 40, 30, date, true};
}

class PhotoIndexTest : public testing::Test {
protected:
    PhotoIndexTest() { ::setenv("LAMINA_MODULES", LAMINA_MODULES, 1); }

    /// With its rows in the file, or in memory where `kept` is false.
    std::shared_ptr<PhotoIndex> open(bool kept = true) const
    {
        return PhotoIndex::open(kept ? cache.path() : std::string());
    }
    std::string file(const std::string& ending = "") const { return cache.path("photos/photos.sqlite" + ending); }

    static PhotoID put(PhotoIndex& index, const PhotoRecord& record)
    {
        PhotoID id = 0;
        index.write([&](PhotoIndex::Writer& writer) { id = writer.putPhoto(record); });
        return id;
    }
    static FolderID put(PhotoIndex& index, const FolderRecord& record)
    {
        FolderID id = 0;
        index.write([&](PhotoIndex::Writer& writer) { id = writer.putFolder(record); });
        return id;
    }
    /// A folder with this many photos, of rising dates.
    static FolderID fill(PhotoIndex& index, int count)
    {
        FolderID folder = 0;
        index.write([&](PhotoIndex::Writer& writer) {
            folder = writer.putFolder(folderAt("/photos", 900000));
            for (int i = 1; i <= count; ++i)
                writer.putPhoto(photo(folder, "IMG_" + std::to_string(i) + ".jpg", 1000 + std::uint64_t(i), i, i));
        });
        return folder;
    }
    /// What another program does to the file.
    void runSQL(const std::string& sql) const
    {
        const CommandResult result = runCommand(
            "/usr/bin/python3",
            {"-c", "import sqlite3, sys; c = sqlite3.connect(sys.argv[1]); c.executescript(sys.argv[2])", file(), sql});
        ASSERT_EQ(result.exitCode, 0) << result.errors;
    }

    const TemporaryFolder cache;
};

TEST_F(PhotoIndexTest, FindsTheRowThatAFileBelongsTo)
{
    struct Put {
        const char* name; ///< in the second folder where it begins with a slash
        std::uint64_t inode;
        int content;
        std::string
            row; ///< "a" and "b" are there before, in the first folder, with inodes 1 and 2 and contents 1 and 2
    };
    const std::vector<std::pair<const char*, std::vector<Put>>> cases{
        {"unchanged", {{"a", 1, 1, "a"}, {"b", 2, 2, "b"}}},
        {"edited in place", {{"a", 1, 7, "a"}}},
        {"renamed", {{"c", 1, 1, "a"}, {"b", 2, 2, "b"}}},
        {"moved", {{"/a", 1, 1, "a"}}},
        {"replaced by another file of its name", {{"a", 3, 7, "a"}}},
        {"swapped", {{"a", 2, 2, "b"}, {"b", 1, 1, "a"}}},
        {"renamed over another, which comes back", {{"a", 2, 2, "b"}, {"c", 1, 1, "a"}}},
        {"a new file with a removed one's inode", {{"c", 1, 7, "new"}, {"a", 4, 1, "a"}}},
        {"a new file under a name that was left", {{"c", 1, 1, "a"}, {"a", 3, 7, "new"}}},
        {"inodes given anew, as on a card", {{"a", 2, 1, "a"}, {"b", 1, 2, "b"}}},
        {"a file system without inodes", {{"a", 0, 1, "a"}, {"b", 0, 2, "b"}, {"c", 0, 3, "new"}}},
    };
    for (const bool kept : {true, false}) {
        for (const auto& [what, puts] : cases) {
            SCOPED_TRACE(what);
            fs::remove_all(cache.path("photos"));
            const std::shared_ptr<PhotoIndex> index = open(kept);
            const FolderID first = put(*index, folderAt("/one", 11));
            const FolderID second = put(*index, folderAt("/two", 12));
            std::map<PhotoID, std::string> rows{{put(*index, photo(first, "a", 1, 1)), "a"},
                                                {put(*index, photo(first, "b", 2, 2)), "b"}};
            for (const Put& step : puts) {
                const bool moved = *step.name == '/';
                PhotoRecord record = photo(moved ? second : first, step.name + moved, step.inode, step.content);
                record.key.device *= step.inode != 0;
                record.id = put(*index, record);
                EXPECT_EQ(rows.emplace(record.id, "new").first->second, step.row) << step.name;
                EXPECT_THAT(index->records(std::array{record.id}), ElementsAre(record));
            }
            const PhotoID gone = index->photos().front().id; // and all of it with gone rows
            index->write([&](PhotoIndex::Writer& writer) { writer.markGone(std::array{gone}); });
            const PhotoRecord record = index->records(std::array{gone}).front();
            EXPECT_EQ(put(*index, record), gone);
        }
    }
}

TEST_F(PhotoIndexTest, GivesAReservedIdToANewFileWhoeverHadItsKeyOrName)
{
    for (const bool kept : {true, false}) {
        const std::shared_ptr<PhotoIndex> index = open(kept);
        const std::shared_ptr<PhotoIndex> other = kept ? open() : index; // as another process has it
        const FolderID folder = put(*index, folderAt("/one", 11));
        const PhotoID found = put(*other, photo(folder, "new", 1, 1));
        const PhotoID named = put(*index, photo(folder, "again", 2, 2));
        const PhotoID keyed = put(*index, photo(folder, "removed", 3, 3));
        index->write([&](PhotoIndex::Writer& writer) { writer.markGone(std::array{named, keyed}); });
        const PhotoRecord again = photo(folder, "again", 3, 7);
        for (PhotoRecord record : {photo(folder, "new", 1, 1), again}) {
            record.id = index->reserve();
            PhotoID given = 0;
            index->write([&](PhotoIndex::Writer& writer) { given = writer.putNewPhoto(record); });
            EXPECT_EQ(given, record.id);
            EXPECT_THAT(other->records(std::array{given}), ElementsAre(record));
            // Who had found it puts it again under the id that has ended.
            PhotoRecord late = record;
            late.id = found;
            EXPECT_EQ(put(*other, late), record.id);
        }
        EXPECT_EQ(other->photosInFolder(folder).size(), 2u);
        EXPECT_EQ(put(*index, photo(folder, "removed", 4, 3)), keyed); // comes back
    }
}

TEST_F(PhotoIndexTest, ListsWhatIsThere)
{
    for (const bool kept : {true, false}) {
        const std::shared_ptr<PhotoIndex> index = open(kept);
        EXPECT_EQ(index->isKept(), kept);
        const FolderID one = put(*index, folderAt("/one", 11));
        const FolderID two = put(*index, folderAt("/two", 12));
        const PhotoID reserved = index->reserve();
        const PhotoID old = put(*index, photo(one, "old", 1, 1, -5.5));
        const PhotoID twin = put(*index, photo(two, "twin \xff\n'", 2, 2, 100.25));
        const PhotoID other = put(*index, photo(one, "other", 3, 3, 100.25));
        PhotoRecord awaited = photo(two, "awaited", 4, 4, 7e9);
        awaited.id = reserved;
        EXPECT_EQ(put(*index, awaited), reserved);
        PhotoRecord late = photo(two, "late", 5, 5, 50);
        late.id = reserved; // taken meanwhile
        late.id = put(*index, late);
        EXPECT_GT(late.id, other);
        EXPECT_THAT(index->photos(), ElementsAre(PhotoPlace{reserved, two, 7e9}, PhotoPlace{twin, two, 100.25},
                                                 PhotoPlace{other, one, 100.25}, PhotoPlace{late.id, two, 50},
                                                 PhotoPlace{old, one, -5.5}));
        EXPECT_EQ(index->find({kDevice, 2})->name, "twin \xff\n'");
        EXPECT_FALSE(index->find({kDevice, 77}));
        EXPECT_FALSE(index->find({}));
        EXPECT_THAT(index->photosInFolder(two), testing::SizeIs(3));

        index->write([&](PhotoIndex::Writer& writer) {
            writer.removeFolder(two);
            writer.markGone(std::array{old});
        });
        EXPECT_THAT(index->photos(), ElementsAre(PhotoPlace{other, one, 100.25}));
        EXPECT_THAT(index->photosInFolder(two), testing::IsEmpty());
        ASSERT_EQ(index->folders().size(), 1u);
        EXPECT_EQ(index->folders().front().path, "/one");
        const std::vector<PhotoRecord> records = index->records(std::array{late.id, PhotoID{9999}, other});
        EXPECT_EQ(records[0], late);
        EXPECT_EQ(records[1], PhotoRecord());
        EXPECT_EQ(records[2].name, "other");
        // A card that returns: another device, the same names.
        EXPECT_EQ(put(*index, FolderRecord{0, "/two", {9, 9}}), two);
        // And a second card, whose turn it is to have these keys.
        index->write([&](PhotoIndex::Writer& writer) { writer.removeFolder(two); });
        const FolderID second = put(*index, FolderRecord{0, "/three", {9, 9}});
        EXPECT_GT(second, late.id);
        index->write([&](PhotoIndex::Writer& writer) { writer.removeFolder(second); });
        EXPECT_EQ(put(*index, FolderRecord{0, "/two", {9, 9}}), two);
        PhotoRecord back = photo(two, "late", 1, 5, 50);
        back.key.device = 9;
        EXPECT_EQ(put(*index, back), late.id);
        // A folder that was renamed, onto the path of another one.
        EXPECT_EQ(put(*index, FolderRecord{0, "/one", {9, 9}}), two);
        EXPECT_THAT(index->photos(), ElementsAre(PhotoPlace{late.id, two, 50}));
        // The next card: what the first one was known by is this one's now.
        index->write([&](PhotoIndex::Writer& writer) { writer.removeFolder(two); });
        EXPECT_GT(put(*index, FolderRecord{0, "/next", {9, 9}}), two);
        EXPECT_EQ(put(*index, FolderRecord{0, "/one", {9, 8}}), two);

        EXPECT_THAT(index->identity(), testing::MatchesRegex("[0-9a-f]{16}"));
        EXPECT_EQ(index->photoID(index->localIdentifier(late.id)), late.id);
        for (const char* wrong : {"", "-", "-1x", "- 1", "-01", "-99999999999999999999"})
            EXPECT_FALSE(index->photoID(index->identity() + wrong)) << wrong;
        EXPECT_FALSE(index->photoID("0123456789abcdef-1"));
    }
}

TEST_F(PhotoIndexTest, OutlivesTheProcessForTheOwnerAloneAndForgetsWhatWentLongAgo)
{
    std::shared_ptr<PhotoIndex> index = open();
    const std::string identity = index->identity();
    fill(*index, 3);
    const std::vector<PhotoPlace> photos = index->photos();
    index->write([&](PhotoIndex::Writer& writer) { writer.markGone(std::array{photos[0].id, photos[1].id}); });
    for (const char* ending : {"", "-wal", "-shm"})
        EXPECT_EQ(fs::status(file(ending)).permissions(), fs::perms::owner_read | fs::perms::owner_write) << ending;
    index.reset();
    EXPECT_FALSE(fs::exists(file("-wal")));
    runSQL("UPDATE photo SET gone = gone - 31 * 86400 WHERE id = " + std::to_string(photos[0].id));
    index = open();
    EXPECT_EQ(index->identity(), identity);
    EXPECT_THAT(index->photos(), ElementsAre(photos[2]));
    const FolderID folder = photos[2].folder;
    EXPECT_EQ(put(*index, photo(folder, "IMG_2.jpg", 1002, 2)), photos[1].id);
    EXPECT_GT(put(*index, photo(folder, "IMG_3.jpg", 1003, 3)), photos[0].id); // not the same identifier
}

/// Overwrites the file from `begin` to `end`, as shares of its length.
void overwrite(const std::string& path, double begin, double end)
{
    std::string bytes = readFile(path);
    const auto at = [&](double share) {
        return bytes.begin() + static_cast<std::ptrdiff_t>(share * double(bytes.size()));
    };
    std::fill(at(begin), at(end), '\xA5');
    writeFile(path, bytes);
}

TEST_F(PhotoIndexTest, GoesOnWithWhatIsLeftOfADamagedFile)
{
    constexpr int kCount = 5000;
    struct Damage {
        const char* what;
        std::function<void()> act;
        std::size_t kept; ///< photos, at least
    };
    const std::vector<Damage> damages{
        {"not a database", [this] { writeFile(file(), std::string(100000, 'x')); }, 0},
        {"no header", [this] { overwrite(file(), 0, 0.001); }, 0},
        {"a tenth of it", [this] { overwrite(file(), 0.3, 0.4); }, kCount / 2},
        {"cut short", [this] { fs::resize_file(file(), fs::file_size(file()) / 2); }, 0},
        {"another version", [this] { runSQL("PRAGMA user_version = 77; DROP TABLE photo;"); }, 0},
        {"tables without a row", [this] { runSQL("DELETE FROM about;"); }, kCount},
        {"nothing in it", [this] { writeFile(file(), ""); }, 0},
    };
    for (const bool whileOpen : {false, true}) {
        for (const Damage& damage : damages) {
            SCOPED_TRACE(std::string(damage.what) + (whileOpen ? " while open" : ""));
            fs::remove_all(cache.path("photos"));
            std::shared_ptr<PhotoIndex> index = open();
            const FolderID folder = fill(*index, kCount);
            const std::vector<PhotoPlace> before = index->photos();
            index.reset();
            std::shared_ptr<PhotoIndex> second; // as another process has it open
            if (whileOpen) {
                index = open();
                second = open();
                EXPECT_EQ(second->photos(), before);
            }
            damage.act();
            LogCapture log;
            if (!whileOpen)
                index = open();
            const std::size_t left = index->photos().size();
            const PhotoID added = put(*index, photo(folder, "new.jpg", 5, 5, 1e6));
            EXPECT_TRUE(index->isKept());
            EXPECT_GE(left, damage.kept);
            EXPECT_LE(log.messages.size(), 1u) << log.text();
            EXPECT_TRUE(index->lossCount() > 0 || !whileOpen || left == before.size());
            for (const PhotoRecord& record : index->photosInFolder(folder)) // who is left is who it was
                EXPECT_EQ(record.name, record.id == added ? "new.jpg" : "IMG_" + std::to_string(record.bytes) + ".jpg");
            const std::string identity = index->identity();
            const std::vector<PhotoPlace> after = index->photos();
            if (second) {
                EXPECT_EQ(second->photos(), after);
                EXPECT_TRUE(second->isKept());
                second.reset();
            }
            index.reset();
            index = open();
            EXPECT_EQ(index->identity(), identity);
            EXPECT_EQ(index->photos(), after);
        }
    }
}

TEST_F(PhotoIndexTest, GoesOnInMemoryWhereNothingCanBeWritten)
{
    const FolderID folder = fill(*open(), 100);
    const std::string identity = open()->identity();
    fs::create_directory(file("-wal")); // as where the folder is read-only: rows can be read, not shared
    {
        const LogCapture log;
        const std::shared_ptr<PhotoIndex> index = open();
        EXPECT_FALSE(index->isKept());
        EXPECT_EQ(index->identity(), identity);
        EXPECT_EQ(index->photos().size(), 100u);
        EXPECT_GT(put(*index, photo(folder, "new.jpg", 5, 5)), index->photos().front().id);
        EXPECT_EQ(log.messages.size(), 1u) << log.text();
    }
    fs::remove(file("-wal"));
    const std::shared_ptr<PhotoIndex> index = open();
    const LogCapture log;
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit former{};
    ::getrlimit(RLIMIT_FSIZE, &former);
    const rlimit full{fs::file_size(file()), former.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &full);
    index->write([&](PhotoIndex::Writer& writer) {
        for (int i = 0; i < 5000; ++i)
            writer.putPhoto(photo(folder, "new" + std::to_string(i), 10000 + std::uint64_t(i), i));
    });
    ::setrlimit(RLIMIT_FSIZE, &former);
    EXPECT_EQ(index->photos().size(), 5100u);
    EXPECT_FALSE(index->isKept());
    EXPECT_EQ(index->lossCount(), 1u);
    EXPECT_EQ(log.messages.size(), 1u) << log.text();
    EXPECT_EQ(open()->photos().size(), 100u);

    runSQL("DELETE FROM about;");
    const std::optional<FolderLock> lock = FolderLock::take(cache.path("photos")); // another process mends it
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(open()->isKept());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2)); // nobody waits for that
}

TEST_F(PhotoIndexTest, GoesOnInMemoryWithoutItsModule)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a fresh process, which has loaded nothing yet
    EXPECT_EXIT(
        {
            ::setenv("LAMINA_MODULES", "/nowhere", 1);
            const std::shared_ptr<PhotoIndex> index = open();
            std::_Exit(!index->isKept() && index->photosInFolder(fill(*index, 7)).size() == 7 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "kept in memory: support for SQLite is not installed");
}

TEST_F(PhotoIndexTest, TwoProcessesGiveAFileOneIdentifier)
{
    // Both take the same files in, each in its own order, a transaction each; one of them also reads all the time.
    const auto takeIn = [this](int step) {
        const std::shared_ptr<PhotoIndex> index = open();
        for (int i = 0; i < 300; ++i)
            put(*index, photo(1, std::to_string(i * step % 300), 1000 + std::uint64_t(i * step % 300), i * step % 300));
        return index->isKept() && index->photos().size() == 300;
    };
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(takeIn(7) ? 0 : 1);
    std::atomic<bool> over = false;
    std::thread reader([&] {
        for (const std::shared_ptr<PhotoIndex> index = open(); !over;)
            EXPECT_TRUE(std::ranges::is_sorted(index->photos(), isShownBefore));
    });
    EXPECT_TRUE(takeIn(1));
    over = true;
    reader.join();
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(open()->photosInFolder(1).size(), 300u);
}

} // namespace
} // namespace lamina::test
