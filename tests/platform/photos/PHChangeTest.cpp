// Snapshots of the library as callers see them, and what becomes of one in the next.
#include "platform/photos/FetchDifferences_p.h"
#include "platform/photos/LibraryReports_p.h"
#include "platform/photos/PHFetchResult_p.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/photos/index/PhotoIndex.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <unordered_map>

namespace lamina::test {
namespace {

using Photos = std::vector<PhotoID>;
using Lists = PHFetchResultChangeDetails::Lists;

/// What a collection view shows after the updates, its cells being told apart by their photos; 0 where it would have
/// to ask for a new one.
Photos updated(const Photos& before, std::size_t count, const Lists& lists)
{
    Photos after(count, 0);
    std::set<std::size_t> taken(lists.removed.begin(), lists.removed.end());
    std::set<std::size_t> filled(lists.inserted.begin(), lists.inserted.end());
    for (const auto& move : lists.moves) {
        after.at(move.to) = before.at(move.from);
        EXPECT_TRUE(taken.insert(move.from).second && filled.insert(move.to).second);
    }
    std::size_t to = 0;
    for (std::size_t from = 0; from < before.size(); ++from) {
        if (taken.contains(from))
            continue;
        while (filled.contains(to))
            ++to;
        after.at(to++) = before[from];
    }
    return after;
}

/// The most photos of both lists that stand in one order in both, by the text-book table.
std::size_t longestCommon(const Photos& x, const Photos& y)
{
    std::vector<std::vector<std::size_t>> best(x.size() + 1, std::vector<std::size_t>(y.size() + 1));
    for (std::size_t i = 0; i < x.size(); ++i)
        for (std::size_t j = 0; j < y.size(); ++j)
            best[i + 1][j + 1] = x[i] == y[j] ? best[i][j] + 1 : std::max(best[i][j + 1], best[i + 1][j]);
    return best[x.size()][y.size()];
}

TEST(FetchDifferences, TurnOneListIntoTheOtherWithAsFewMovesAsCanBe)
{
    std::mt19937 random(7);
    const auto upTo = [&](std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(random); };
    for (int round = 0; round < 2000; ++round) {
        SCOPED_TRACE(round);
        Photos all(upTo(30) + 2);
        std::iota(all.begin(), all.end(), round % 3 == 0 ? -5 : 1 + (PhotoID(round) << 33)); // 0 is one like others
        std::shuffle(all.begin(), all.end(), random);
        const Photos before(all.begin(), all.end() - static_cast<std::ptrdiff_t>(upTo(all.size())));
        Photos after(all.begin() + static_cast<std::ptrdiff_t>(upTo(all.size() / 4)), all.end());
        for (std::size_t swaps = upTo(2) * upTo(3); swaps > 0 && !after.empty(); --swaps)
            std::swap(after[upTo(after.size() - 1)], after[upTo(after.size() - 1)]);
        const Photos changed{all[upTo(all.size() - 1)], all[0], 12345};

        const auto lists = fetchDifferences(before, after, changed, 100);
        ASSERT_TRUE(lists);
        Photos expected = after;
        for (const std::size_t place : lists->inserted)
            expected[place] = 0;
        ASSERT_EQ(updated(before, after.size(), *lists), expected);
        ASSERT_EQ(before.size() - lists->removed.size() - lists->moves.size(), longestCommon(before, after));
        std::vector<std::size_t> places;
        for (std::size_t i = 0; i < after.size(); ++i)
            if (std::count(changed.begin(), changed.end(), after[i]) &&
                std::count(before.begin(), before.end(), after[i]))
                places.push_back(i);
        ASSERT_EQ(lists->changed, places);
        const std::size_t most =
            std::max({lists->removed.size() + lists->inserted.size(), places.size(), lists->moves.size()});
        EXPECT_TRUE(fetchDifferences(before, after, changed, most));
        EXPECT_FALSE(most > 0 && fetchDifferences(before, after, changed, most - 1));
    }
}

PhotoIDs shared(Photos photos)
{
    return std::make_shared<const Photos>(std::move(photos));
}

/// A library whose snapshots are made by hand, of photos that an index knows.
class Snapshots : public testing::Test {
protected:
    static constexpr int kPhotos = 700;

    void SetUp() override
    {
        index->write([this](PhotoIndex::Writer& writer) {
            photos.clear();
            FolderRecord sea;
            sea.path = "/photos/sea";
            folder = writer.putFolder(sea);
            PhotoRecord photo;
            photo.folder = folder;
            for (int i = 0; i < kPhotos; ++i) {
                photo.name = name(i);
                photo.modified = photo.width = i;
                photos.push_back(writer.putPhoto(photo));
            }
        });
    }
    static std::string name(int number) { return "photo " + std::to_string(number) + ".jpg"; }

    LibrarySnapshotPtr snapshot(std::uint64_t generation, Photos all, Photos inFolder = {}) const
    {
        LibrarySnapshot made;
        made.generation = generation;
        made.all = shared(std::move(all));
        made.camera = made.screenshots = made.lamina = shared({});
        made.folders.push_back(
            {.id = folder, .path = "/photos/sea", .title = "sea", .photos = shared(std::move(inFolder))});
        made.folderPaths = std::make_shared<const std::unordered_map<FolderID, std::string>>(
            std::unordered_map<FolderID, std::string>{{folder, "/photos/sea"}});
        made.looseFiles = std::make_shared<const std::vector<LooseFile>>(
            std::vector<LooseFile>{{.id = kLoose, .path = "/elsewhere/a.png", .width = 3}});
        made.index = index;
        return std::make_shared<const LibrarySnapshot>(std::move(made));
    }
    static PHFetchResult fetched(const LibrarySnapshotPtr& library, const AlbumKey& album = {})
    {
        return PHFetchResult(std::make_shared<const PHFetchResult::Content>(library, album));
    }
    AlbumKey sea() const { return {PHAssetCollectionSubtype::AlbumRegular, folder}; }

    static constexpr PhotoID kLoose = PhotoID(1) << 40;
    const std::shared_ptr<PhotoIndex> index = PhotoIndex::open("");
    FolderID folder = 0;
    Photos photos;
};

TEST_F(Snapshots, TellOfEveryPhotoAsItIsKnown)
{
    Photos all = photos;
    all.push_back(kLoose);
    const PHFetchResult result = fetched(snapshot(1, all));
    ASSERT_EQ(result.count(), all.size());
    EXPECT_EQ(result.firstObject()->path, "/photos/sea/photo 0.jpg");
    for (const int place : {699, 255, 256, 0, 511, 699, 1, 512}) {
        const PHAsset asset = result.objectAtIndex(static_cast<std::size_t>(place));
        EXPECT_EQ(asset.path, "/photos/sea/" + name(place));
        EXPECT_EQ(asset.pixelWidth, place);
        EXPECT_EQ(asset.modified, place);
        EXPECT_EQ(result.indexOfObject(asset), place);
    }
    EXPECT_EQ(result.objectAtIndex(700).path, "/elsewhere/a.png");
    EXPECT_EQ(result.indexOfObject(result.objectAtIndex(700)), 700);
    EXPECT_EQ(result.objectAtIndex(701), PHAsset());
    EXPECT_EQ(result.objects(699, 100).size(), 2u);
    EXPECT_TRUE(result.objects(702, 1).empty());

    // A snapshot stays as it was; what is gone is still told of, and what is known of nobody is no asset.
    index->write([this](PhotoIndex::Writer& writer) { writer.markGone(std::vector{photos[3]}); });
    EXPECT_EQ(fetched(snapshot(1, all)).objectAtIndex(3).path, "/photos/sea/photo 3.jpg");
    EXPECT_EQ(fetched(snapshot(1, {kLoose + 1})).objectAtIndex(0), PHAsset());
    EXPECT_FALSE(result.containsObject(fetched(snapshot(1, {kLoose + 1})).objectAtIndex(0)));

    const PHFetchResult empty = fetched(snapshot(1, {}));
    EXPECT_EQ(empty, PHFetchResult());
    EXPECT_FALSE(empty.firstObject() || PHFetchResult().containsObject(*result.firstObject()));
    EXPECT_EQ(result, fetched(snapshot(2, all)));
    EXPECT_FALSE(result == fetched(snapshot(2, photos)));
}

TEST_F(Snapshots, SayWhatAChangeMeansForThemAlsoWhenTheyMissedSome)
{
    const Photos first{photos[0], photos[1], photos[2]};
    const auto report = [](const LibrarySnapshotPtr& before, const LibrarySnapshotPtr& after, Photos changed,
                           RecentChanges& recent) {
        recent.add({before, after, std::move(changed)});
        return PHChange(std::make_shared<const PHChange::Content>(PHChange::Content{after, recent}));
    };
    const LibrarySnapshotPtr s4 = snapshot(4, first, {photos[0]});
    const LibrarySnapshotPtr s5 = snapshot(5, first, {photos[0]});
    const LibrarySnapshotPtr s6 = snapshot(6, {photos[3], photos[1], photos[2]}, {photos[0]});
    RecentChanges recent;
    const PHFetchResult all = fetched(s4);
    const PHFetchResult inSea = fetched(s4, sea());
    const PHChange fourToFive = report(s4, s5, {photos[1]}, recent);
    const PHChange fiveToSix = report(s5, s6, {}, recent);

    auto details = fourToFive.changeDetailsForFetchResult(all);
    ASSERT_TRUE(details && details->hasIncrementalChanges());
    EXPECT_EQ(details->changedIndexes(), std::vector<std::size_t>{1});
    EXPECT_EQ(details->fetchResultAfterChanges(), all);
    EXPECT_FALSE(fourToFive.changeDetailsForFetchResult(inSea));
    EXPECT_FALSE(fourToFive.changeDetailsForFetchResult(fetched(s5))); // fetched since
    EXPECT_FALSE(fourToFive.changeDetailsForFetchResult(fetched(s6)));
    EXPECT_FALSE(fourToFive.changeDetailsForFetchResult(PHFetchResult()));

    for (const bool missedOne : {true, false}) { // what it missed is told as well
        details = fiveToSix.changeDetailsForFetchResult(missedOne ? all : fetched(s5));
        ASSERT_TRUE(details && details->hasIncrementalChanges() && !details->hasMoves());
        EXPECT_EQ(details->removedIndexes(), std::vector<std::size_t>{0});
        EXPECT_EQ(details->insertedIndexes(), std::vector<std::size_t>{0});
        EXPECT_EQ(details->changedIndexes(), missedOne ? std::vector<std::size_t>{1} : std::vector<std::size_t>{});
        EXPECT_EQ(details->fetchResultAfterChanges(), fetched(s6));
        EXPECT_EQ(details->fetchResultBeforeChanges(), all);
    }
    EXPECT_FALSE(fiveToSix.changeDetailsForFetchResult(inSea));

    // Of before there were reports at all nobody knows what was changed, and of what is long ago neither.
    const auto unsure = [](const PHChange& change, const PHFetchResult& result) {
        const auto told = change.changeDetailsForFetchResult(result);
        return told && !told->hasIncrementalChanges() && told->fetchResultAfterChanges().count() == 3;
    };
    EXPECT_TRUE(unsure(fiveToSix, fetched(snapshot(3, first))));
    for (std::uint64_t generation = 7; generation < 400; ++generation)
        recent.add({snapshot(generation - 1, {}), snapshot(generation, {}), {photos[2]}});
    EXPECT_TRUE(unsure(report(snapshot(399, first), snapshot(400, first), {}, recent), all));
    details = report(snapshot(400, {}), snapshot(401, first), {}, recent)
                  .changeDetailsForFetchResult(fetched(snapshot(390, first)));
    EXPECT_EQ(details->changedIndexes(), std::vector<std::size_t>{2});
}

/// Writes down what it hears, and does something else then.
class Listener : public PHPhotoLibraryChangeObserver {
public:
    Listener(std::string& heard, char name)
        : m_heard(heard)
        , m_name(name)
    {
    }
    void photoLibraryDidChange(const PHChange&) override
    {
        m_heard += m_name;
        if (then)
            then();
    }
    std::function<void()> then;

private:
    std::string& m_heard;
    char m_name;
};

TEST_F(Snapshots, AreReportedToObserversInTheirOrderWhoeverLeaves)
{
    std::string heard;
    const auto a = std::make_shared<Listener>(heard, 'a');
    auto b = std::make_shared<Listener>(heard, 'b');
    auto c = std::make_shared<Listener>(heard, 'c');
    const auto d = std::make_shared<Listener>(heard, 'd');
    for (const auto& observer : {a, b, c, a})
        PHPhotoLibrary::registerChangeObserver(observer);
    PHPhotoLibrary::registerChangeObserver({});
    std::uint64_t generation = 0;
    const auto tell = [&] {
        heard.clear();
        const LibrarySnapshotPtr before = snapshot(generation, {});
        LibraryReports::shared().tell({before, snapshot(++generation, {}), {}});
        return heard;
    };
    EXPECT_EQ(tell(), "abc");
    a->then = [&] { PHPhotoLibrary::unregisterChangeObserver(b.get()); };
    b->then = [] { FAIL(); };
    c->then = [&] {
        PHPhotoLibrary::unregisterChangeObserver(c.get());
        c.reset();
        PHPhotoLibrary::registerChangeObserver(d);
    };
    EXPECT_EQ(tell(), "ac");
    EXPECT_EQ(tell(), "ad");
    a->then = b->then = {};
    PHPhotoLibrary::registerChangeObserver(b); // again, at the end
    EXPECT_EQ(tell(), "adb");
    b.reset();
    EXPECT_EQ(tell(), "ad");
    PHPhotoLibrary::unregisterChangeObserver(a.get());
    PHPhotoLibrary::unregisterChangeObserver(d.get());
}

} // namespace
} // namespace lamina::test
