// The photo picker's camera tile, and the photo that is taken from there, with a camera that isn't one.
#include "PhotoPickerFixture.h"
#include "StandInCamera.h"

#include "platform/base/CGGeometry.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/AVCaptureSession.h"
#include "platform/view/UIImagePickerController.h"

#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

using Status = AVAuthorizationStatus;

class PhotoPickerCamera : public PhotoPickerTest {
protected:
    void SetUp() override
    {
        PhotoPickerTest::SetUp();
        UIImagePickerController::setCameraAvailability([] { return true; });
        AVCaptureDevice::setSource({[this] { return status; },
                                    [this](const auto& handler) {
                                        status = answer;
                                        handler(answer == Status::Authorized);
                                    },
                                    [this](AVTrackMediaType) { return there; }});
        use->turned = 90;
    }
    void TearDown() override
    {
        AVCaptureDevice::setSource({});
        UIImagePickerController::setCameraAvailability({});
        PhotoPickerTest::TearDown();
    }
    YMSCameraCell& tile() { return *qobject_cast<YMSCameraCell*>(cells[0]); }
    std::shared_ptr<UIImagePickerController> camera() const
    {
        return std::dynamic_pointer_cast<UIImagePickerController>(window.topViewController());
    }
    void take(const UIImage& image)
    {
        picker->tapItem(0);
        settle();
        ASSERT_TRUE(camera());
        picker->imagePickerController(*camera(), {image, "taken"});
        settle();
    }

    Status status = Status::Authorized;
    Status answer = Status::Authorized;
    const std::shared_ptr<StandInCamera> use = std::make_shared<StandInCamera>();
    std::vector<std::shared_ptr<AVCaptureDevice>> there{use};
    const UIImage photo{rampPicture(20, 10, 77), 1, UIImageOrientation::Right};
};

TEST_F(PhotoPickerCamera, ShowsWhatItSeesInItsTileWhereItMayAndCan)
{
    const struct {
        Status status;
        bool opens;
        bool session;
        double veil;
    } table[] = {{Status::Authorized, true, true, 0.5},
                 {Status::Authorized, false, true, 1},
                 {Status::NotDetermined, true, false, 1}};
    for (const auto& c : table) {
        status = c.status;
        use->opens = c.opens;
        YMSCameraCell cell;
        EXPECT_EQ(cell.session() != nullptr, c.session);
        EXPECT_EQ(cell.veilAlpha(), c.veil);
    }
    use->opens = true;
    open(2);
    EXPECT_EQ(tile().veilAlpha(), 1);
    EXPECT_TRUE(tile().isAvailable());
    status = Status::Authorized;
    display(); // asked again, after the answer
    settle();
    EXPECT_EQ(tile().veilAlpha(), 0.5);
    EXPECT_EQ(tile().session(), picker->session());
    EXPECT_EQ(use->running(), 1);
    EXPECT_TRUE(use->give(photo.cgImage()));
    settle();
    EXPECT_EQ(tile().preview().pixelSize(), (IntSize{10, 20}));
    cells.clear();
    picker.reset();
    window.rootViewController()->dismiss(false);
    settle();
    EXPECT_EQ(use->running(), 0);
}

TEST_F(PhotoPickerCamera, HasItsTileToItselfOnlyWhileThatIsSeen)
{
    open(2);
    settle();
    EXPECT_EQ(use->running(), 1);
    picker->tapItem(0);
    settle();
    EXPECT_EQ(use->running(), 0) << "the camera's screen has it";
    AVCaptureDevice::devicesDidChange();
    settle();
    EXPECT_EQ(use->running(), 0);
    camera()->cancel();
    settle();
    EXPECT_EQ(use->running(), 1);
    picker->presentSinglePhoto(1);
    settle();
    EXPECT_EQ(use->running(), 0);
    window.topViewController()->dismiss(false);
    settle();
    EXPECT_EQ(use->running(), 1);
    picker->endDisplaying(cells[0]); // scrolled out of sight
    EXPECT_EQ(use->running(), 0);
    cells[0] = picker->cellForItem(0);
    settle();
    EXPECT_EQ(use->running(), 1);

    there.clear();
    use->end({"stand-in", "unplugged"});
    AVCaptureDevice::devicesDidChange();
    settle();
    EXPECT_EQ(tile().veilAlpha(), 1);
    there = {use};
    AVCaptureDevice::devicesDidChange();
    settle();
    EXPECT_EQ(tile().veilAlpha(), 0.5);
    EXPECT_EQ(use->running(), 1);
}

TEST_F(PhotoPickerCamera, IsAskedForAndRefusedToThePickersDelegate)
{
    const struct {
        Status status;
        Status answer;
        bool opens;
    } table[] = {{Status::Authorized, Status::Denied, true},
                 {Status::Restricted, Status::Authorized, false},
                 {Status::Denied, Status::Authorized, false},
                 {Status::NotDetermined, Status::Authorized, true},
                 {Status::NotDetermined, Status::Denied, false}};
    open(3);
    int denied = 0;
    for (const auto& c : table) {
        status = c.status;
        answer = c.answer;
        picker->tapItem(0);
        settle();
        EXPECT_EQ(camera() != nullptr, c.opens);
        EXPECT_EQ(delegate->denied, denied += c.opens ? 0 : 1);
        if (c.opens) {
            EXPECT_EQ(camera()->sourceType(), UIImagePickerControllerSourceType::Camera);
            camera()->cancel(); // which deselects the tile
        } else {
            picker->tapItem(0); // it stays selected where nothing has come
        }
        settle();
        EXPECT_TRUE(picker->indexPathsForSelectedItems().empty());
    }
    UIImagePickerController::setCameraAvailability({});
    picker->tapItem(0);
    settle();
    EXPECT_FALSE(camera());
    EXPECT_EQ(picker->indexPathsForSelectedItems(), std::set<int>{0});
}

TEST_F(PhotoPickerCamera, TakesAPhotoIntoTheAlbumOnShowAndChoosesIt)
{
    open(3);
    for (const bool userAlbum : {false, true}) {
        if (userAlbum)
            show("sea");
        const std::size_t before = picker->currentCollectionItem()->assets.count();
        take(photo);
        settleUntil([&] { return picker->currentCollectionItem()->assets.count() == before + 1; });
        ASSERT_EQ(picker->selectedCount(), userAlbum ? 2 : 1);
        const PHAsset& taken = picker->selectedPhotos().back();
        EXPECT_EQ(fs::path(taken.path).parent_path(), picture(userAlbum ? "sea" : "Lamina"));
        EXPECT_EQ(taken.pixelHeight, 20);
        EXPECT_TRUE(picker->doneItem()->isEnabled());
        EXPECT_TRUE(picker->indexPathsForSelectedItems().contains(1));
    }
    take({}); // nothing was taken
    EXPECT_EQ(picker->selectedCount(), 2);

    picker->tapItem(0);
    settle();
    picker->imagePickerController(*camera(), {photo, "taken"});
    picker->presentAlbumPickerView(); // before it is saved
    settleUntil([] { return fetchCollectionItems().front().assets.count() == 10; });
    window.topViewController()->dismiss(false);
    settle();
    EXPECT_EQ(picker->selectedCount(), 3);
    EXPECT_TRUE(picker->indexPathsForSelectedItems().contains(1));
}

TEST_F(PhotoPickerCamera, HandsAPhotoOnAtOnceWhereOneIsWanted)
{
    open(1);
    fs::remove_all(home.path("Pictures/Lamina"));
    writeFile(picture("Lamina"), "in the way"); // it can't be saved, and is delivered all the same
    take(photo);
    EXPECT_EQ(delegate->images.size(), 1u);
}

} // namespace
} // namespace lamina::test
