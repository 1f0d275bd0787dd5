// The photo picker: which albums it shows, how photos are chosen, and how it ends.
#include "PhotoPickerFixture.h"

#include "picker/YMSAlbumPickerViewController.h"
#include "picker/YMSSinglePhotoViewController.h"
#include "platform/base/CGGeometry.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIViewAnimation.h"

#include <set>

namespace lamina::test {
namespace {

TEST_F(PhotoPickerTest, ChoosesInTwoAlbumsAndNumbersOnWithinTheLimit)
{
    open(2);
    EXPECT_EQ(albums(), "All Photos 7, sea 4, town 2, ");
    EXPECT_EQ(picker->albumTitle(), "All Photos");
    EXPECT_FALSE(picker->doneItem()->isEnabled());
    tap("s3");
    EXPECT_TRUE(picker->doneItem()->isEnabled());
    show("town");
    EXPECT_EQ(marks(), "");
    tap("t2");
    EXPECT_EQ(marks(), "t2:2");
    EXPECT_EQ(picker->selectionText(), "2 of 2");
    tap("t1"); // silently too many, as is a photo that would be taken
    picker->tapItem(0);
    EXPECT_EQ(chosen(), "s3 t2");
    EXPECT_EQ(picker->indexPathsForSelectedItems(), std::set<int>{2});

    show("All Photos");
    EXPECT_EQ(marks(), "s3:1 t2:2");
    EXPECT_TRUE(picker->itemDescription(itemOf("t2")).endsWith(", chosen, number 2"));
    picker->finishPickingPhotos();
    EXPECT_EQ(delegate->finished, std::vector<std::string>{"s3 t2"});
    EXPECT_EQ(picker->presentingViewController(), window.rootViewController());

    tap("s3");
    EXPECT_EQ(marks(), "t2:1");
    tap("p1");
    EXPECT_EQ(marks(), "t2:1 p1:2");
    tap("p1");
    tap("t2");
    EXPECT_EQ(picker->selectedCount(), 0);
    EXPECT_FALSE(picker->doneItem()->isEnabled());
    picker->finishPickingPhotos();
    picker->cancelPicking();
    EXPECT_EQ(delegate->finished.size(), 1u);
    EXPECT_EQ(delegate->cancelled, 1);
}

TEST_F(PhotoPickerTest, RenumbersThoseOfTheAlbumOnShowAndTheOthersWhenTheyAreShown)
{
    open(0);
    for (const char* const name : {"s1", "t1", "s2", "p1"})
        tap(name);
    EXPECT_EQ(picker->selectionText(), "4 chosen");
    show("sea");
    EXPECT_EQ(marks(), "s1:1 s2:3");
    tap("s1");
    EXPECT_EQ(marks(), "s2:2");
    show("All Photos");
    EXPECT_EQ(marks(), "s2:2 t1:1 p1:3");
}

TEST_F(PhotoPickerTest, HasRoomForAsManyAsItsLimitAndForAnyNumberWithoutOne)
{
    const struct {
        unsigned limit;
        std::string chosen;
        std::size_t finished;
    } table[] = {{0, "s1 s2 s3 s4", 0}, {1, "s1", 1}, {2, "s1 s2", 0}, {3, "s1 s2 s3", 0}};
    for (const auto& c : table) {
        delegate->finished.clear();
        open(c.limit, false);
        EXPECT_EQ(picker->doneItem() == nullptr, c.limit == 1);
        for (const char* const name : {"s1", "s2", "s3", "s4"})
            tap(name);
        EXPECT_EQ(chosen(), c.chosen);
        EXPECT_EQ(delegate->finished.size(), c.finished); // one photo finishes at once
        EXPECT_EQ(picker->canAddPhoto(), c.limit == 0);
        delegate->dismisses = true;
        for (int taps = 0; taps < 2; ++taps)
            picker->finishPickingPhotos();
        EXPECT_EQ(delegate->finished.size(), c.finished + 1);
        delegate->dismisses = false;
        cells.clear();
        settle();
    }
}

TEST_F(PhotoPickerTest, GivesThePictureOfOnePhotoOrSaysWhyThereIsNone)
{
    open(1);
    tap("t2");
    picker->presentAlbumPickerView(); // given up
    settle();
    EXPECT_TRUE(picker->indexPathsForSelectedItems().empty() && delegate->images.empty());
    window.topViewController()->dismiss(false);
    settle();
    tap("t1");
    tap("t2"); // the newest choice counts
    settle();
    ASSERT_EQ(delegate->images.size(), 1u);
    EXPECT_EQ(delegate->images[0].pixelSize(), (IntSize{40, 30}));
    EXPECT_EQ(chosen(), "");

    writeFile(file("sea/s2"), readFile(file("sea/s2")).substr(0, 90));
    tap("s2");
    settle();
    const auto alert = std::dynamic_pointer_cast<UIAlertController>(window.topViewController());
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->message(), "~/Pictures/sea/s2.png: the file ends too early.");
    EXPECT_EQ(delegate->cancelled, 0);
    alert->tap(0);
    settle();
    EXPECT_EQ(delegate->cancelled, 1);
    EXPECT_EQ(delegate->images.size(), 1u);
}

TEST_F(PhotoPickerTest, AddsThePhotoThatIsLargeAndShowsTheAlbumThatIsChosen)
{
    open(2);
    const auto look = [&](const std::string& name) {
        picker->presentSinglePhoto(itemOf(name));
        settle();
        return std::dynamic_pointer_cast<YMSSinglePhotoViewController>(window.topViewController());
    };
    tap("t1");
    picker->presentSinglePhoto(0); // the camera
    EXPECT_FALSE(picker->presentedViewController());
    auto large = look("s2");
    ASSERT_TRUE(large);
    EXPECT_EQ(large->numberText(), "2 of 2");
    large->showNeighbour(1);
    large->selectCurrentPhoto();
    settle();
    EXPECT_EQ(marks(), "s3:2 t1:1");
    large = look("s1");
    EXPECT_EQ(large->numberText(), ""); // there is no room
    large->selectCurrentPhoto();
    large->cancel();
    settle();
    EXPECT_EQ(chosen(), "t1 s3");

    const auto list = [&] {
        picker->presentAlbumPickerView();
        settle();
        return std::dynamic_pointer_cast<YMSAlbumPickerViewController>(window.topViewController());
    };
    int reloads = 0;
    QObject::connect(picker->photosModel(), &QAbstractItemModel::modelReset, [&] { ++reloads; });
    list()->cancel(); // reports the album on show
    settle();
    EXPECT_EQ(reloads, 0);
    const auto albums = list();
    ASSERT_TRUE(albums);
    EXPECT_EQ(albums->selectedRow(), 0);
    albums->selectRow(2);
    settle();
    EXPECT_EQ(picker->albumTitle(), "town");
    EXPECT_EQ(reloads, 1);
}

TEST_F(PhotoPickerTest, FillsATileForOnePhotoAtATime)
{
    open(2);
    auto* tile = qobject_cast<YMSPhotoCell*>(cells[static_cast<std::size_t>(itemOf("s1"))]);
    EXPECT_EQ(tile->targetSize(), (CGSize{118 * 3 * 0.75, 118 * 3 * 0.75}));
    settle();
    EXPECT_TRUE(tile->thumbnailImage() && !tile->isUnreadable());
    picker->placeGrid(768, 1024, 2, 8, 8); // a larger window: its picture is asked for again
    EXPECT_EQ(tile->targetSize().width, 249 * 3 * 0.75);
    EXPECT_TRUE(tile->thumbnailImage());
    display(); // shown anew, it has its picture at once
    tile = qobject_cast<YMSPhotoCell*>(cells[static_cast<std::size_t>(itemOf("s1"))]);
    EXPECT_TRUE(tile->thumbnailImage());

    const auto manager = std::make_shared<PHImageManager>();
    const PHAsset s1 = picker->currentCollectionItem()->assets.objectAtIndex(0);
    PHAsset broken{.localIdentifier = "broken", .path = home.path("none.png")};
    YMSPhotoCell cell;
    cell.setRepresentedAsset(s1);
    cell.loadPhotoWithManager(manager, s1, {40, 40});
    cell.setRepresentedAsset(broken); // the answer for the first one comes too late
    settle();
    EXPECT_FALSE(cell.thumbnailImage() || cell.isUnreadable());
    cell.loadPhotoWithManager(manager, broken, {40, 40});
    settle();
    EXPECT_TRUE(cell.isUnreadable());
    cell.setRepresentedAsset(s1);
    cell.setShownSide(10); // a coarse display
    cell.loadPhotoWithManager(manager, s1, {40, 40});
    settle();
    EXPECT_EQ(cell.thumbnailImage().pixelSize(), (IntSize{10, 10}));
    cell.loadPhotoWithManager(manager, s1, {40, 40});
    cell.prepareForReuse();
    EXPECT_EQ(cell.imageRequestID(), PHInvalidImageRequestID);
    EXPECT_FALSE(cell.isUnreadable());

    for (const bool animated : {false, true, false}) {
        cell.setSelected(true);
        if (animated)
            cell.setNeedsAnimateSelection(); // for one change
        cell.setSelected(false);
        EXPECT_EQ(cell.veilAlpha().value(), 0);
        EXPECT_EQ(cell.enableSelectionIndicatorViewVisibility(), animated); // until it has faded
        settle();
        EXPECT_FALSE(cell.enableSelectionIndicatorViewVisibility());
    }
    cell.animateHighlight(true);
    EXPECT_EQ(cell.pressScale().value(), 0.9);
    cell.animateHighlight(false); // a short tap: after the press
    EXPECT_EQ(cell.pressScale().value(), 0.9);
    settle();
    EXPECT_EQ(cell.pressScale().value(), 1);
    EXPECT_EQ(cell.pressScale().motion().spring, (UIViewSpring{0.5, 6}));
    picker->highlightItem(tile->item());
    picker->endDisplaying(tile);
    EXPECT_EQ(tile->pressScale().value(), 1);
}

} // namespace
} // namespace lamina::test
