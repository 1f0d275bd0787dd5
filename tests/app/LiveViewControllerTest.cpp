#include "app/LiveViewController.h"

#include "ScreenTest.h"
#include "StandInCamera.h"
#include "TestClips.h"
#include "editors/collage/CollageFilters.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/photos/PictureFolders.h"

#include <cstdlib>
#include <filesystem>
#include <functional>

namespace lamina::test {
namespace {

constexpr int kSepia = 502;
constexpr int kGray = 504;
constexpr int kHue = 506;
constexpr int kContrast = 50;
constexpr int kSaturation = 56;

/// The live screen in a window that nobody sees, its camera in the test's hands.
class LiveScreen : public ScreenTest {
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        for (const char* const name : {"HOME", "XDG_CONFIG_HOME"})
            ::setenv(name, home.path().c_str(), 1); // stills and clips go there
        camera->modes = {{.size = {64, 48}, .minFrameRate = 1, .maxFrameRate = 30, .encoding = "NV12"}};
    }
    void open(const std::string& movie = {})
    {
        live = storyboard->instantiate<LiveViewController>(scene::kLive);
        live->setMovie(movie);
        window.setRootViewController(live);
        live->view();
        live->layOut(64, 48);
        waitFor([&] { return movie.empty() ? camera->running() == 1 : live->state() == LiveViewController::Live; });
    }
    void TearDown() override
    {
        live.reset();
        ScreenTest::TearDown();
    }
    static void waitFor(const std::function<bool()>& done)
    {
        // What is waited for may come about without a block on the main queue.
        bool came = false;
        for (int i = 0; i < 2000 && !came; ++i)
            came = DispatchQueue::main().runUntil(done, 0.01);
        EXPECT_TRUE(came);
    }
    /// A frame of one colour, which has gone all the way; nothing where nobody takes it.
    void give(const Rgba& color)
    {
        const CMTime time = CMTime::make(++frame, 10);
        waitFor([&] { return !camera->give(solidPicture(64, 48, color), time) || live->frameTime() == time; });
        runSynchronouslyOnVideoProcessingQueue([] {});
        DispatchQueue::main().drain();
    }
    /// The still that is saved now.
    CGImage still()
    {
        std::filesystem::remove_all(photoLibraryFolder());
        live->dismissNotice();
        live->takeStill();
        waitFor([&] { return !live->notice().isEmpty(); });
        for (const auto& file : std::filesystem::directory_iterator(photoLibraryFolder()))
            return readPictureFile(file.path().string());
        return {};
    }
    static Rgba middle(const CGImage& picture) { return pixelAt(picture, picture.width() / 2, picture.height() / 2); }
    /// The file that ended clips are told by.
    std::string clip()
    {
        waitFor([&] { return live->noticeShares(); });
        const QString name = live->notice().mid(9).chopped(1); // of "Saved as NAME."
        return documentsFolder() + '/' + name.toStdString();
    }

    const TemporaryFolder home;
    const std::shared_ptr<StandInCamera> camera = std::make_shared<StandInCamera>();
    const ServedCameras served{{camera}};
    std::shared_ptr<LiveViewController> live;
    int frame = 0;
};

TEST_F(LiveScreen, FiltersWhatComesAndWhatStandsStill)
{
    open();
    EXPECT_EQ(live->state(), LiveViewController::Starting);
    const Rgba orange{200, 100, 50, 255};
    give(orange);
    EXPECT_EQ(live->state(), LiveViewController::Live);
    EXPECT_NEAR(live->aspect(), 64.0 / 48, 1e-6);
    EXPECT_LE(difference(middle(still()), orange), 4);

    live->chooseLook(kGray);
    give(orange);
    const Rgba gray = middle(still());
    EXPECT_NEAR(gray[0], 0.2125 * 200 + 0.7154 * 100 + 0.0721 * 50, 3);
    EXPECT_EQ(gray[0], gray[2]);

    live->togglePaused();
    EXPECT_EQ(camera->running(), 0) << "nobody looks through it";
    give({0, 0, 0, 255});
    live->chooseLook(kFirstCollageFilter);
    EXPECT_LE(difference(middle(still()), orange), 4) << "the last frame stays";
    live->slide(kSaturation, 0);
    EXPECT_EQ(live->changedSliders(), 1);
    EXPECT_EQ(live->sliderText(kSaturation, 0), "0.00");
    EXPECT_LE(difference(middle(still()), gray), 3);
    live->resetFilters();
    EXPECT_EQ(live->changedSliders(), 0);
    EXPECT_LE(difference(middle(still()), orange), 4);
    live->togglePaused();
    EXPECT_EQ(camera->running(), 1);
}

TEST_F(LiveScreen, LooksHaveSlidersOfTheirOwn)
{
    open();
    const auto labels = [&] {
        std::vector<std::string> all;
        for (const QVariant& row : live->sliders())
            all.push_back(row.toMap().value("label").toString().toStdString());
        return all;
    };
    EXPECT_EQ(labels(), (std::vector<std::string>{"contrast", "brightness", "saturation", "vignette"}));
    give({200, 100, 50, 255});
    live->chooseLook(kHue);
    ASSERT_EQ(labels().size(), 5u);
    EXPECT_EQ(labels().front(), "Hue");
    const int tag = live->sliders().front().toMap().value("tag").toInt();
    live->slide(tag, 0);
    give({200, 100, 50, 255});
    EXPECT_LE(difference(middle(still()), {200, 100, 50, 255}), 6) << "no turn at all";
    live->stepLook(1);
    EXPECT_EQ(live->filters().look, kHue + 1);
    EXPECT_EQ(live->changedSliders(), 0) << "they belong to the look";
    for (int i = 0; i < static_cast<int>(kLiveLookCount); ++i) {
        live->stepLook(-1);
        give({200, 100, 50, 255});
    }
    EXPECT_EQ(live->filters().look, kHue + 1);
    EXPECT_EQ(camera->running(), 1);
    EXPECT_EQ(camera->requests().size(), 1u) << "the camera knows nothing of it";
}

TEST_F(LiveScreen, ComparesByALineAndByAPress)
{
    open();
    UIView& before = *live->canvasView()->subviews().back();
    EXPECT_TRUE(before.isHidden());
    live->toggleComparing();
    EXPECT_EQ(before.frame(), (CGRect{0, 0, 32, 48}));
    live->setLine(0.25);
    EXPECT_EQ(before.frame(), (CGRect{0, 0, 16, 48}));
    live->setLine(7);
    EXPECT_EQ(live->line(), 1);
    live->toggleComparing();
    EXPECT_TRUE(before.isHidden());
}

TEST_F(LiveScreen, RecordsWhatIsSeen)
{
    open();
    give({200, 100, 50, 255});
    live->chooseLook(kGray);
    live->chooseTool("clip");
    EXPECT_TRUE(live->isRecording());
    for (int i = 0; i < 10; ++i)
        give({200, 100, 50, 255});
    EXPECT_EQ(live->clipTime(), "0:00");
    live->togglePaused();
    frame += 100;
    live->togglePaused();
    for (int i = 0; i < 5; ++i)
        give({200, 100, 50, 255});
    camera->end({"stand-in", "unplugged"});
    waitFor([&] { return live->state() == LiveViewController::Stopped; });
    EXPECT_FALSE(live->isRecording());
    EXPECT_TRUE(live->trouble().contains("unplugged"));
    const std::string path = clip();
    const auto times = frameTimes(path);
    ASSERT_GE(times.size(), 2u) << "what comes faster than it can be encoded is left out";
    EXPECT_LT(times.back(), 2) << "the pause is left out";
    const Rgba gray = middle(decodedFrame(path, 0));
    EXPECT_NEAR(gray[0], gray[2], 4);

    AVCaptureDevice::devicesDidChange();
    waitFor([&] { return camera->running() == 1; });
    give({1, 2, 3, 255});
    EXPECT_EQ(live->state(), LiveViewController::Live) << "it is back";
}

TEST_F(LiveScreen, SaysWhatStandsInTheWay)
{
    camera->opens = false;
    live = storyboard->instantiate<LiveViewController>(scene::kLive);
    window.setRootViewController(live);
    live->view();
    waitFor([&] { return live->state() == LiveViewController::Stopped; });
    EXPECT_TRUE(live->trouble().contains("in use")) << live->trouble().toStdString();
    camera->opens = true;
    live->tryAgain();
    EXPECT_EQ(camera->running(), 1);

    AVAuthorizationStatus status = AVAuthorizationStatus::NotDetermined;
    std::function<void(bool)> answer;
    AVCaptureDevice::setSource({[&] { return status; },
                                [&](std::function<void(bool)> asked) { answer = std::move(asked); },
                                [](AVTrackMediaType) { return std::vector<std::shared_ptr<AVCaptureDevice>>(); }});
    live->togglePaused();
    live->togglePaused();
    ASSERT_TRUE(answer);
    status = AVAuthorizationStatus::Denied;
    answer(false);
    waitFor([&] { return live->state() == LiveViewController::Stopped; });
    EXPECT_TRUE(live->trouble().contains("may not use the camera"));
    status = AVAuthorizationStatus::Authorized;
    live->tryAgain();
    EXPECT_EQ(live->state(), LiveViewController::Starting) << "cameras may take a moment to be found";
    waitFor([&] { return live->state() == LiveViewController::Stopped; });
    EXPECT_TRUE(live->trouble().contains("no camera"));
}

TEST_F(LiveScreen, RunsOnlyWhileItIsSeen)
{
    open();
    give({1, 2, 3, 255});
    live->setWindowShown(false);
    EXPECT_EQ(camera->running(), 0);
    live->setWindowShown(true);
    EXPECT_EQ(camera->running(), 1);
    live->present(storyboard->instantiate<UIViewController>(scene::kHome), false);
    settle();
    EXPECT_EQ(camera->running(), 0) << "covered";
    live->dismiss(false);
    settle();
    EXPECT_EQ(camera->running(), 1);
    window.setRootViewController(nullptr);
    live.reset();
    settle();
    EXPECT_EQ(camera->running(), 0);
}

class LiveMovieScreen : public LiveScreen {
protected:
    std::string movie()
    {
        const std::string path = folder.path("Evening sea.mp4");
        makeClip({"-f", "lavfi", "-i", "testsrc=s=64x48:r=20:d=1", "-f", "lavfi", "-i", "sine=d=1", "-pix_fmt",
                  "yuv420p", "-g", "5"},
                 path);
        return path;
    }
};

TEST_F(LiveMovieScreen, PlaysOverAndOverAndIsRecordedWithItsSound)
{
    open(movie());
    EXPECT_EQ(live->title(), "Evening sea");
    EXPECT_NEAR(live->duration(), 1, 0.1);
    live->togglePaused();
    const double paused = live->position();
    live->seek(0.5);
    waitFor([&] { return live->position() != paused; });
    EXPECT_NEAR(live->position(), 0.5, 0.06);
    live->togglePaused();
    live->chooseTool("clip");
    waitFor([&] { return live->position() > 0.8; });
    waitFor([&] { return live->position() < 0.4; });
    waitFor([&] { return live->position() > 0.4; });
    live->back();
    const std::string path = clip();
    const auto times = frameTimes(path);
    ASSERT_GE(times.size(), 12u);
    EXPECT_NEAR(times.back(), 0.05 * static_cast<double>(times.size() - 1), 0.15) << "no gap where it began again";
    EXPECT_NEAR(static_cast<double>(storedSound(path).size()) / 44100, times.back(), 0.3);
}

TEST_F(LiveMovieScreen, KeepsItsSourceWhereAFileIsNoMovie)
{
    open(movie());
    live->receivePhotos({photo("a.png")});
    waitFor([&] { return top<UIAlertController>() != nullptr; });
    EXPECT_EQ(live->sourceName(), "movie");
    EXPECT_EQ(live->state(), LiveViewController::Live);
    alertText();
    live->useCamera();
    EXPECT_EQ(live->sourceName(), "camera");
    EXPECT_EQ(camera->running(), 1);
}

} // namespace
} // namespace lamina::test
