// The photo picker while its library changes, and photos that come from outside.
#include "PhotoPickerFixture.h"

#include "platform/image/pixels/CGImage.h"
#include "platform/photos/PhotoSource.h"

#include <set>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

class PhotoPickerChanges : public PhotoPickerTest {
protected:
    void waitForCount(std::size_t count)
    {
        settleUntil([&] {
            return picker->currentCollectionItem() && picker->currentCollectionItem()->assets.count() == count;
        });
    }
};

TEST_F(PhotoPickerChanges, KeepTilesAndMarksWhereTheirPhotosAre)
{
    open(3);
    tap("s2");
    tap("t1");
    addPhoto("sea/new", 0);
    addPhoto("town/between", 3 * 3600 + 60);
    waitForCount(9);
    EXPECT_EQ(marks(), "s2:1 t1:2");
    EXPECT_EQ(picker->indexPathsForSelectedItems(), (std::set<int>{3, 7}));
    display();
    EXPECT_EQ(marks(), "s2:1 t1:2");
    picker->tapItem(7);
    EXPECT_EQ(marks(), "s2:1");

    // Another picture under the same name: its tile asks again, and keeps its mark.
    const auto* const tile = qobject_cast<YMSPhotoCell*>(cells[3]);
    const CGImage former = tile->thumbnailImage().cgImage();
    addPhoto("sea/s2", 2 * 3600, 255);
    settleUntil([&] { return tile->thumbnailImage() && !imagesMatch(tile->thumbnailImage().cgImage(), former); });
    EXPECT_EQ(marks(), "s2:1");

    // Another one gets another name, of which the library hears later.
    tap("s3");
    {
        const LibraryEngine::Hold hold = photoLibrary().holdChanges();
        fs::rename(file("sea/s3"), file("sea/s9"));
        EXPECT_EQ(fetchAssetsWithLocalIdentifiers({picker->selectedPhotos()[1].localIdentifier}).size(), 1u);
    }
    settleUntil([&] { return chosen() == "s2 s9"; });
    EXPECT_TRUE(qobject_cast<YMSPhotoCell*>(cells[4])->represents(picker->selectedPhotos()[1]));
    EXPECT_EQ(marks(), "s2:1 s9:2");
    EXPECT_TRUE(notices.empty());
}

TEST_F(PhotoPickerChanges, NameAChosenPhotoThatHasVanishedAndCloseUpTheNumbers)
{
    open(3);
    for (const char* const name : {"t1", "s2", "s3"})
        tap(name);
    show("sea");
    fs::remove(file("town/t1")); // in an album that isn't on show
    settleUntil([&] { return !notices.empty(); });
    EXPECT_EQ(notices, std::vector<std::string>{"No longer there: “t1.png”"});
    EXPECT_EQ(marks(), "s2:1 s3:2");

    // One goes and another is replaced: the whole grid is shown anew, with its marks.
    const TemporaryFolder away;
    addPhoto("sea/s4", 0, 9);
    fs::rename(file("sea/s2"), away.path("s2.png"));
    waitForCount(3);
    display();
    EXPECT_EQ(notices.size(), 2u);
    EXPECT_EQ(marks(), "s3:1");
    EXPECT_EQ(chosen(), "s3");
    fs::remove_all(picture("sea"));
    waitForCount(0);
    EXPECT_FALSE(picker->doneItem()->isEnabled());
}

TEST_F(PhotoPickerChanges, ShowTheFirstPhotosOfAnEmptyLibrary)
{
    for (const char* const folder : {"sea", "town", "p1.png"})
        fs::remove_all(picture(folder));
    settleUntil([] { return fetchTopLevelUserCollections().empty(); });
    open(2);
    settleUntil([&] { return picker->libraryState() == YMSPhotoPickerViewController::Empty; });
    EXPECT_FALSE(picker->currentCollectionItem());
    EXPECT_EQ(picker->photosModel()->rowCount(), 1);
    EXPECT_EQ(picker->emptyLine(), "Photos are looked for in ~/Pictures");
    addPhoto("sea/fresh", 0);
    waitForCount(1);
    EXPECT_EQ(picker->libraryState(), YMSPhotoPickerViewController::Filled);
    picker->presentAlbumPickerView(); // nobody tells the picker while it is covered
    fs::remove(file("sea/fresh"));
    settleUntil([] { return fetchCollectionItems().empty(); });
    window.topViewController()->dismiss(false);
    waitForCount(0);
    EXPECT_EQ(picker->libraryState(), YMSPhotoPickerViewController::Empty);
}

TEST_F(PhotoPickerChanges, TakeInWhatComesFromOutsideAsFarAsThereIsRoom)
{
    open(3);
    tap("s1");
    const std::string outside = home.path("outside"); // a picture by its head alone
    writePng(outside, rampPicture(9, 9, 1));
    writeFile(home.path("text.png"), "no picture");
    const std::string bytes = readFile(outside);
    picker->receivePhotos({PhotoSource::fromFile(outside), PhotoSource::fromFile(home.path("text.png")),
                           PhotoSource::fromFile(file("sea/s1")), // chosen already
                           PhotoSource::fromBytes({bytes.begin(), bytes.end()}, "pasted"),
                           PhotoSource::fromBytes({'x'}, "rubbish"), PhotoSource::fromFile(file("sea/s2"))});
    settle();
    ASSERT_EQ(picker->selectedCount(), 3);
    EXPECT_EQ(picker->selectedPhotos()[1].path, outside);
    EXPECT_EQ(fs::path(picker->selectedPhotos()[2].path).parent_path(), picture("Lamina"));
    EXPECT_EQ(notices, std::vector<std::string>{"text.png: not a picture. Left out besides: 1. "
                                                "There is no room for one more photo."});
    EXPECT_EQ(readFile(picker->selectedPhotos()[2].path), bytes);
}

} // namespace
} // namespace lamina::test
