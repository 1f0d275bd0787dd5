// The screen of the camera, with cameras that aren't any.
#include "app/PhotoCamera.h"

#include "ScreenTest.h"
#include "StandInCamera.h"
#include "platform/base/Clock.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/photos/PhotoLoading.h"
#include "platform/view/UIImagePickerController.h"

#include <optional>
#include <vector>

namespace lamina::test {
namespace {

using Status = AVAuthorizationStatus;
using Place = AVCaptureDevicePosition;

/// A quarter of each of four colours, from the top left: red, green, blue, white.
CGImage quarters(int width, int height)
{
    return makePicture(width, height, [=](int x, int y) {
        const bool right = 2 * x >= width, low = 2 * y >= height;
        const auto full = [](bool on) { return static_cast<std::uint8_t>(on ? 255 : 0); };
        return Rgba{full(right == low), full(right), full(low), 255};
    });
}
/// The colours of a picture's quarters, from the top left.
std::string quartersOf(const UIImage& image)
{
    std::string found;
    const IntSize size = image.pixelSize();
    for (const auto& [x, y] : {std::pair{1, 1}, {3, 1}, {1, 3}, {3, 3}}) {
        const std::uint8_t* const pixel = image.cgImage().row(y * size.height / 4) + 4 * (x * size.width / 4);
        found += pixel[0] > 127 ? (pixel[1] > 127 ? 'w' : 'r') : pixel[1] > 127 ? 'g' : pixel[2] > 127 ? 'b' : '-';
    }
    return found;
}

struct Recorder : UIImagePickerControllerDelegate {
    void imagePickerController(UIImagePickerController& picker, const UIImagePickerInfo& info) override
    {
        taken = info;
        picker.dismiss(false);
    }
    std::optional<UIImagePickerInfo> taken;
};

class PhotoCameraTest : public ScreenTest {
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        installPhotoCamera();
        for (const auto& camera : {first, second})
            camera->modes = {{{2560, 1920}, 1, 60}, {{1280, 960}, 1, 60}}; // frames are smaller than they say
        second->name = "second";
        AVCaptureDevice::setSource({[this] { return status; },
                                    [this](const auto& handler) {
                                        status = answer;
                                        handler(answer == Status::Authorized);
                                    },
                                    [this](AVTrackMediaType) { return there; }});
        window.setRootViewController(std::make_shared<UIViewController>());
    }
    void TearDown() override
    {
        close();
        AVCaptureDevice::setSource({});
        UIImagePickerController::setCameraFactory({});
        ScreenTest::TearDown();
    }

    /// Presents a picker that takes a photo.
    PhotoCamera& open()
    {
        close();
        picker = std::make_shared<UIImagePickerController>();
        picker->setSourceType(UIImagePickerControllerSourceType::Camera);
        picker->setDelegate(recorder);
        window.rootViewController()->present(picker, false);
        return camera();
    }
    PhotoCamera& camera() { return dynamic_cast<PhotoCamera&>(*picker->camera()); }
    void close()
    {
        if (picker && picker->presentingViewController())
            picker->dismiss(false);
        picker.reset();
        DispatchQueue::main().drain();
    }
    static bool comesTrue(const std::function<bool()>& condition)
    {
        // A change on a device's thread tells nobody.
        for (int i = 0; i < 2000; ++i)
            if (DispatchQueue::main().runUntil(condition, 0.01))
                return true;
        return false;
    }
    bool comesTo(PhotoCamera::State state)
    {
        return comesTrue([&] { return this->camera().state() == state; });
    }
    /// The camera is started, and what it gives is seen.
    bool showsFrames(StandInCamera& camera)
    {
        return comesTrue([&] { return camera.running() == 1; }) && camera.give(frame) && comesTo(PhotoCamera::Live);
    }
    /// It goes to its largest size.
    bool beginsStill(StandInCamera& camera)
    {
        this->camera().takePhoto();
        EXPECT_EQ(this->camera().state(), PhotoCamera::Taking);
        return comesTrue([&] { return camera.requests().back().size == IntSize(); });
    }
    bool takesPhoto(StandInCamera& camera)
    {
        if (!beginsStill(camera))
            return false;
        for (int i = 0; i < 4; ++i)
            camera.give(still, CMTime::make(i, 1));
        return comesTo(PhotoCamera::Taken);
    }

    Status status = Status::Authorized;
    Status answer = Status::Authorized;
    const std::shared_ptr<StandInCamera> first = std::make_shared<StandInCamera>();
    const std::shared_ptr<StandInCamera> second = std::make_shared<StandInCamera>();
    std::vector<std::shared_ptr<AVCaptureDevice>> there{first};
    const CGImage frame = quarters(64, 48);
    const CGImage still = quarters(128, 96);
    std::shared_ptr<UIImagePickerController> picker;
    const std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>();
    std::optional<UIImagePickerInfo>& taken = recorder->taken;
};

TEST_F(PhotoCameraTest, PhotosAreUprightAsTheyWereSeen)
{
    const struct {
        Place place;
        int turned;
        IntSize size;
        const char* quarters;
    } table[] = {{Place::Unspecified, 0, {128, 96}, "rgbw"},
                 {Place::Back, 90, {96, 128}, "brwg"},
                 {Place::Front, 0, {128, 96}, "grwb"},
                 {Place::Front, 270, {96, 128}, "wgbr"}};
    for (const auto& c : table) {
        SCOPED_TRACE(c.quarters);
        first->place = c.place;
        first->turned = c.turned;
        PhotoCamera& camera = open();
        ASSERT_TRUE(showsFrames(*first));
        EXPECT_EQ(camera.aspectRatio(), double(c.size.width) / c.size.height);
        ASSERT_TRUE(takesPhoto(*first));
        EXPECT_EQ(first->running(), 0) << "it is let go";
        EXPECT_EQ(camera.aspectRatio(), double(c.size.width) / c.size.height);
        picker->usePhoto();
        ASSERT_TRUE(taken);
        EXPECT_EQ(taken->originalImage.imageOrientation(), UIImageOrientation::Up);
        EXPECT_EQ(taken->originalImage.pixelSize(), c.size);
        EXPECT_EQ(quartersOf(taken->originalImage), c.quarters);
        const Result<UIImage> again = loadUpright(taken->source, {});
        ASSERT_TRUE(again.ok());
        EXPECT_EQ(again->pixelSize(), c.size);
        EXPECT_EQ(quartersOf(*again), c.quarters);
        taken.reset();
    }
}

TEST_F(PhotoCameraTest, APhotoIsTakenAgainOrNotAtAll)
{
    PhotoCamera& camera = open();
    camera.takePhoto(); // nothing is seen yet
    EXPECT_EQ(camera.state(), PhotoCamera::Starting);
    ASSERT_TRUE(showsFrames(*first));
    ASSERT_TRUE(takesPhoto(*first));
    camera.retake();
    EXPECT_FALSE(camera.photo().image);
    ASSERT_TRUE(showsFrames(*first));
    picker->usePhoto(); // there is none
    EXPECT_FALSE(taken);
    picker->cancel();
    EXPECT_EQ(first->running(), 0);
    EXPECT_FALSE(taken);
}

TEST_F(PhotoCameraTest, TellsWhyThereIsNothingToSee)
{
    const auto clock = std::make_shared<ManualClock>();
    Clock::setShared(clock);
    const auto texts = [&] {
        const PhotoCamera& camera = this->camera();
        return (camera.title() + "|" + camera.message()).toStdString();
    };
    const struct {
        Status status;
        Status answer;
        bool isThere;
        bool opens;
        const char* texts;
        bool refused;
        bool canTryAgain;
    } table[] = {
        {Status::Denied, Status::Denied, true, true, "Allow camera access?|Need your permission to take a photo", true,
         true},
        {Status::NotDetermined, Status::Denied, true, true, "Allow camera access?|Need your permission to take a photo",
         true, true},
        {Status::Authorized, Status::Authorized, false, true, "No camera|Plug one in, and it goes on here.", false,
         false},
        {Status::Authorized, Status::Authorized, true, false,
         "Can’t open the camera|stand-in: in use. Perhaps something else is using it. Close that, and try again.",
         false, true}};
    for (const auto& c : table) {
        status = c.status;
        answer = c.answer;
        first->opens = c.opens;
        there = c.isThere ? std::vector<std::shared_ptr<AVCaptureDevice>>{first} : decltype(there)();
        PhotoCamera& camera = open();
        DispatchQueue::main().drain();
        if (!c.isThere) {
            EXPECT_EQ(camera.state(), PhotoCamera::Starting) << "it may only just be looked for";
            clock->advance(PhotoCamera::kDevicesPatience);
        }
        ASSERT_TRUE(comesTo(PhotoCamera::Failed)) << c.texts;
        EXPECT_EQ(texts(), c.texts);
        EXPECT_EQ(camera.isRefused(), c.refused);
        EXPECT_EQ(camera.canTryAgain(), c.canTryAgain);
        // What stood in the way is gone.
        answer = Status::Authorized;
        first->opens = true;
        there = {first};
        if (c.canTryAgain)
            camera.tryAgain();
        else
            AVCaptureDevice::devicesDidChange();
        EXPECT_TRUE(showsFrames(*first)) << c.texts;
        EXPECT_EQ(texts(), "|");
    }
    Clock::setShared(nullptr);
}

TEST_F(PhotoCameraTest, GoesOnWhenAnUnpluggedCameraIsBack)
{
    for (const bool whileTaking : {false, true}) {
        PhotoCamera& camera = open();
        ASSERT_TRUE(showsFrames(*first));
        ASSERT_TRUE(!whileTaking || beginsStill(*first));
        there.clear();
        first->end({"stand-in", "unplugged"});
        ASSERT_TRUE(comesTo(PhotoCamera::Failed));
        EXPECT_EQ(camera.title(), "The camera has stopped");
        EXPECT_EQ(camera.message(), "stand-in: unplugged. It goes on as soon as the camera is back.");
        there = {second};
        AVCaptureDevice::devicesDidChange();
        DispatchQueue::main().drain();
        EXPECT_EQ(camera.state(), PhotoCamera::Failed) << "another one is taken only if somebody says so";
        there = {second, first};
        AVCaptureDevice::devicesDidChange();
        EXPECT_TRUE(showsFrames(*first));
        EXPECT_TRUE(camera.canSwitch());
        there = {first};
    }
}

TEST_F(PhotoCameraTest, GoesToTheOtherCameraAndBack)
{
    second->place = Place::Back;
    there = {first, second};
    PhotoCamera& camera = open();
    ASSERT_TRUE(showsFrames(*second)) << "the one at the back is preferred";
    EXPECT_TRUE(camera.canSwitch());
    camera.switchCamera();
    ASSERT_TRUE(showsFrames(*first));
    EXPECT_EQ(camera.deviceName(), "stand-in");
    EXPECT_EQ(second->running(), 0);
    camera.switchCamera();
    EXPECT_TRUE(showsFrames(*second));
}

TEST_F(PhotoCameraTest, LetsGoOfACameraThatNobodySees)
{
    const auto clock = std::make_shared<ManualClock>();
    Clock::setShared(clock);
    PhotoCamera& camera = open();
    ASSERT_TRUE(showsFrames(*first));
    camera.setInSight(false);
    clock->advance(PhotoCamera::kUnseenPatience / 2);
    camera.setInSight(true); // soon enough
    camera.setInSight(false);
    clock->advance(PhotoCamera::kUnseenPatience / 2);
    DispatchQueue::main().drain();
    EXPECT_EQ(first->running(), 1);
    clock->advance(PhotoCamera::kUnseenPatience / 2);
    ASSERT_TRUE(comesTrue([&] { return first->running() == 0; }));
    camera.setInSight(true);
    EXPECT_TRUE(showsFrames(*first));
    Clock::setShared(nullptr);
}

} // namespace
} // namespace lamina::test
