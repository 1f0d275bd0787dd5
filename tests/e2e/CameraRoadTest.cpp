// Photos by a camera in the window: into a blend, into the picker's selection, into a collage's slot.
#include "FedCamera.h"
#include "TestPictures.h"
#include "WindowTest.h"
#include "app/PhotoCamera.h"

#include "editors/blend/BlendComposition.h"
#include "editors/collage/CollageComposition.h"
#include "editors/collage/CreateCollageViewController.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "platform/media/AVAssetReader.h"
#include "platform/photos/PictureFolders.h"

#include <QCoreApplication>

#include <filesystem>

namespace lamina::test {
namespace {

constexpr IntSize kStill{128, 96};

class CameraRoad : public WindowTest {
protected:
    void TearDown() override { driver.reset(); }

    void openWithCamera(LaunchOptions options = {})
    {
        camera->modes = {{kStill, 1, 60}, {{64, 48}, 1, 60}};
        open(std::move(options));
        AVCaptureDevice::setSource(
            {[] { return AVAuthorizationStatus::Authorized; },
             {},
             [this](AVTrackMediaType) { return std::vector<std::shared_ptr<AVCaptureDevice>>{camera}; }});
        UIImagePickerController::setCameraAvailability([] { return true; });
        AVCaptureDevice::devicesDidChange();
        driver->settle();
    }
    PhotoCamera* shown()
    {
        const auto picker = driver->top<UIImagePickerController>();
        return picker ? dynamic_cast<PhotoCamera*>(picker->camera()) : nullptr;
    }
    bool comesTo(PhotoCamera::State state)
    {
        const bool came = WindowDriver::waitUntil([&] { return shown() && shown()->state() == state; });
        driver->settle();
        return came;
    }
    /// What the camera gives is seen in the window.
    bool isSeen()
    {
        return WindowDriver::waitUntil([&] {
            const CanvasItem* const canvas = driver->canvas();
            const QImage& image = canvas ? canvas->shownImage() : QImage();
            return !image.isNull() && image.pixelColor(image.width() / 2, image.height() / 2) == QColor(0, 0, 255);
        });
    }
    /// From a screen that has just been asked for a photo back to it, or on.
    void takeByTouch()
    {
        ASSERT_TRUE(comesTo(PhotoCamera::Live));
        EXPECT_TRUE(isSeen());
        ASSERT_TRUE(driver->tap(QStringLiteral("Take a photo")));
        ASSERT_TRUE(comesTo(PhotoCamera::Taken));
        EXPECT_TRUE(isSeen());
        ASSERT_TRUE(driver->tap(QStringLiteral("Use photo")));
    }

    const std::shared_ptr<StandInCamera> camera = std::make_shared<StandInCamera>();
    const FedCamera feeding{camera, solidPicture(kStill.width, kStill.height, {0, 0, 255, 255})};
};

TEST_F(CameraRoad, TwoPhotosGoIntoABlendByTouchAndByKeys)
{
    openWithCamera();
    ASSERT_TRUE(driver->tap(QStringLiteral("Blend")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    ASSERT_TRUE(driver->tap(QStringLiteral("Camera")));
    takeByTouch();
    ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
    EXPECT_EQ(camera->running(), 0);
    ASSERT_TRUE(driver->tap(QStringLiteral("Use photo")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());

    using enum PhotoCamera::State;
    pressUntil("Camera");
    const struct {
        Qt::Key key;
        PhotoCamera::State leadsTo;
        const char* focused;
    } steps[] = {{Qt::Key_Return, Live, "Take a photo"}, {Qt::Key_Space, Taken, "Use photo"},
                 {Qt::Key_R, Live, "Take a photo"},      {Qt::Key_Return, Taken, "Use photo"},
                 {Qt::Key_Escape, Live, "Take a photo"}, {Qt::Key_Space, Taken, "Use photo"}};
    for (const auto& step : steps) {
        driver->press(step.key);
        ASSERT_TRUE(comesTo(step.leadsTo)) << step.focused;
        EXPECT_EQ(driver->focusedName().toStdString(), step.focused);
    }
    driver->press(Qt::Key_Return);
    ASSERT_TRUE(driver->waitFor<PinchZoomViewController>());
    driver->press(Qt::Key_Return);
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());
    for (const BlendPhoto& photo : driver->top<BlendPhotoViewController>()->composition().photos) {
        EXPECT_TRUE(photo.image);
        EXPECT_TRUE(photo.source.bytes) << "it can be cropped again, and kept";
    }

    driver->press(Qt::Key_O, Qt::ControlModifier); // the second one again
    ASSERT_TRUE(driver->tap(QStringLiteral("Camera")));
    ASSERT_TRUE(comesTo(Live));
    EXPECT_EQ(driver->top<UIImagePickerController>()->title(), "Photo 2 of 2");
    camera->end({"stand-in", "unplugged"});
    ASSERT_TRUE(comesTo(Failed));
    EXPECT_EQ(driver->focusedName(), QStringLiteral("Try again"));
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(driver->waitFor<BlendPhotoViewController>());
    EXPECT_EQ(camera->running(), 0);
}

TEST_F(CameraRoad, ThePickersTileTakesAPhotoIntoTheSelectionAndIntoASlot)
{
    QDir(QString::fromStdString(picturesFolder())).removeRecursively();
    LaunchOptions options;
    options.screen = "picker";
    openWithCamera(options);
    ASSERT_TRUE(driver->waitFor<YMSPhotoPickerViewController>());
    const auto picker = driver->top<YMSPhotoPickerViewController>();
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return camera->running() == 1; })) << "the tile shows what it sees";
    tapTile(0);
    takeByTouch();
    ASSERT_TRUE(driver->waitFor<YMSPhotoPickerViewController>());
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return picker->selectedCount() == 1; }));
    EXPECT_EQ(std::filesystem::path(picker->selectedPhotos()[0].path).parent_path().filename(), "Lamina");
    EXPECT_EQ(picker->selectedPhotos()[0].pixelWidth, kStill.width);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return camera->running() == 1; })) << "the tile has it again";
    tapTile(0);
    ASSERT_TRUE(comesTo(PhotoCamera::Live));
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<YMSPhotoPickerViewController>());
    EXPECT_EQ(picker->selectedCount(), 1);
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return camera->running() == 0; }));

    driver.reset();
    options.screen = "two";
    options.files = {sample("dunes.jpg"), sample("meadow.jpg")};
    openWithCamera(options);
    ASSERT_TRUE(driver->waitFor<CreateCollageViewController>());
    const auto collage = driver->top<CreateCollageViewController>();
    ASSERT_TRUE(driver->tap(QStringLiteral("Gallery")));
    ASSERT_TRUE(driver->waitFor<YMSPhotoPickerViewController>());
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return tile(0) != nullptr; }));
    tapTile(0);
    takeByTouch();
    ASSERT_TRUE(driver->waitFor<CreateCollageViewController>());
    EXPECT_EQ(collage->composition().photoSlots[0].master.pixelSize(), kStill);
}

} // namespace
} // namespace lamina::test
