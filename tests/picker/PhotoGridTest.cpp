// The photo picker's grid: its measures, its rows, and what goes along when rows come and go.
#include "picker/PhotoGrid.h"
#include "picker/PhotoGridMeasures.h"
#include "picker/PhotoGridModel.h"
#include "picker/YMSPhotoCell.h"
#include "platform/photos/PHFetchResult_p.h"
#include "platform/photos/index/PhotoIndex.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>

namespace lamina::test {
namespace {

TEST(PhotoGridMeasures, GoByTheShorterSideUpTo640AndShareTheWidth)
{
    const struct {
        CGSize view;
        double inset;
        double side;
        int columns;
    } table[] = {
        {{360, 720}, 0, 118, 3},  {{320, 568}, 0, 105, 3},  {{640, 640}, 0, 212, 3},
        {{320, 200}, 0, 78, 4},   {{568, 320}, 0, 112, 5},  {{720, 360}, 8, 115, 6},
        {{768, 1024}, 8, 249, 3}, {{1280, 800}, 8, 209, 6}, {{3840, 2160}, 8, 210, 18},
    };
    for (const auto& c : table) {
        const PhotoGridPlace place{c.view, 2, c.inset, c.inset};
        const PhotoGridMeasures measures = isPortraitGrid(place) ? portraitMeasures(place) : landscapeMeasures(place);
        EXPECT_EQ(measures.cellSide, c.side) << c.view.width;
        EXPECT_EQ(measures.columns, c.columns) << c.view.width;
    }
    // The right margin widens the room that columns are counted in; nothing is divided by a side that isn't there.
    EXPECT_EQ(landscapeMeasures({{580, 330}, 0, 0, 30}).columns, 6);
    EXPECT_EQ(landscapeMeasures({{600, 1}, 2, 0, 0}).cellSide, 1);
}

using Ids = std::vector<PhotoID>;
using Lists = PHFetchResultChangeDetails::Lists;

PHFetchResult fetched(const Ids& ids)
{
    static const std::shared_ptr<PhotoIndex> index = PhotoIndex::open("");
    std::vector<LooseFile> files;
    for (const PhotoID id : ids)
        files.push_back({.id = id, .path = "/photos/" + std::to_string(id) + ".jpg", .modified = id});
    std::ranges::sort(files, {}, &LooseFile::id);
    LibrarySnapshot library;
    library.all = std::make_shared<const Ids>(ids);
    library.looseFiles = std::make_shared<const std::vector<LooseFile>>(std::move(files));
    library.folderPaths = std::make_shared<const std::unordered_map<FolderID, std::string>>();
    library.index = index;
    return PHFetchResult(std::make_shared<const PHFetchResult::Content>(
        std::make_shared<const LibrarySnapshot>(std::move(library)), AlbumKey()));
}

std::vector<qlonglong> stampsOf(const PhotoGridModel& model)
{
    std::vector<qlonglong> stamps;
    for (int row = 1; row < model.count(); ++row)
        stamps.push_back(model.data(model.index(row), Qt::UserRole + 2).toLongLong());
    return stamps;
}

TEST(PhotoGridModel, TellsEveryStepOfAChangeAsItIsThen)
{
    std::mt19937 random(5);
    const auto upTo = [&](std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(random); };
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        Ids before(upTo(20));
        std::iota(before.begin(), before.end(), 1);
        Ids after;
        Lists lists;
        for (std::size_t i = 0; i < before.size(); ++i)
            if (upTo(2) == 0)
                lists.removed.push_back(i);
            else
                after.push_back(before[i]);
        for (std::size_t added = upTo(8); added > 0; --added)
            after.insert(after.begin() + static_cast<std::ptrdiff_t>(upTo(after.size())), 100 + PhotoID(added));
        for (std::size_t i = 0; i < after.size(); ++i)
            if (after[i] >= 100)
                lists.inserted.push_back(i);

        PhotoGridModel model;
        model.reset(fetched(before));
        std::vector<qlonglong> seen = stampsOf(model);
        const auto remove = [&](const QModelIndex&, int first, int last) {
            seen.erase(seen.begin() + first - 1, seen.begin() + last);
            EXPECT_EQ(stampsOf(model), seen);
        };
        const auto insert = [&](const QModelIndex&, int first, int last) {
            const std::vector<qlonglong> all = stampsOf(model);
            seen.insert(seen.begin() + first - 1, all.begin() + first - 1, all.begin() + last);
            EXPECT_EQ(all, seen);
        };
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &model, remove);
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &model, insert);
        model.update({fetched(before), fetched(after), lists, true});
        EXPECT_EQ(seen, std::vector<qlonglong>(after.begin(), after.end()));
    }
}

/// Lets everything be selected, and writes down which photo each tile got.
class Filler : public PhotoGridDelegate {
public:
    void prepareCameraCell(YMSCameraCell&) override {}
    void preparePhotoCell(YMSPhotoCell& cell, int item) override { cell.setRepresentedAsset(assetOfItem(item)); }
    void refreshPhotoCell(YMSPhotoCell& cell, int item) override
    {
        EXPECT_EQ(cell.representedAssetIdentifier(), assetOfItem(item).localIdentifier);
        ++refreshed;
    }
    bool shouldSelectItem(int) override { return true; }
    void didSelectItem(int) override {}
    bool shouldDeselectItem(int) override { return true; }
    void didDeselectItem(int) override {}

    PHAsset assetOfItem(int item) const override
    {
        return item == 0 ? PHAsset() : photos.objectAtIndex(static_cast<std::size_t>(item) - 1);
    }
    PHFetchResult photos;
    int refreshed = 0;
};

TEST(PhotoGrid, TakesTilesAndSelectionAlongAndMakesNoMoreThanAreShown)
{
    Ids ids(50'000);
    std::iota(ids.begin(), ids.end(), 1);
    Filler filler;
    filler.photos = fetched(ids);
    PhotoGrid grid(filler);
    grid.allowsMultipleSelection = true;
    grid.reloadData(filler.photos);
    EXPECT_EQ(grid.numberOfItems(), 50'001);
    EXPECT_FALSE(grid.displayItem(50'001) || grid.displayItem(-1));
    for (int item = 0; item < 500; ++item) // scrolled through, 24 in sight
        if (PhotoGridCell* const cell = grid.displayItem(item); item < 476)
            grid.endDisplaying(cell);
    EXPECT_EQ(grid.model().children().size(), 25); // the camera's among them

    for (const int item : {0, 480, 490, 499})
        grid.tapItem(item);
    PhotoGridCell* const last = grid.cellForItem(499);
    PhotoGridCell* const gone = grid.cellForItem(490);
    Ids after = ids;
    after.erase(after.begin() + 489);          // item 490
    after.insert(after.begin() + 100, 60'000); // two before all of them
    after.insert(after.begin(), 60'001);
    const PHFetchResult before = std::exchange(filler.photos, fetched(after));
    grid.performBatchUpdates(
        {before, filler.photos, {.removed = {489}, .inserted = {0, 101}, .changed = {}, .moves = {}}, true}, {480});
    EXPECT_EQ(last->item(), 500);
    EXPECT_EQ(gone->item(), -1);
    EXPECT_EQ(filler.refreshed, 23);
    EXPECT_EQ(grid.indexPathsForSelectedItems(), (std::set<int>{0, 482, 500}));

    grid.reloadItem(482); // a reload takes its mark, as does a list that is another
    EXPECT_FALSE(grid.cellForItem(482)->isSelected());
    grid.reloadData(before);
    EXPECT_TRUE(grid.indexPathsForSelectedItems().empty());
}

} // namespace
} // namespace lamina::test
