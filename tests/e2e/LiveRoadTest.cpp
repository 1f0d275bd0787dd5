#include "StandInCamera.h"
#include "TestPictures.h"
#include "WindowTest.h"
#include "app/LiveViewController.h"
#include "app/ViewController.h"
#include "platform/media/VideoExport.h"

#include <QColor>
#include <QTemporaryDir>

#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

const Rgba kOrange{200, 100, 50, 255};

/// The live screen in a window, with a camera in the test's hands.
class LiveRoad : public WindowTest {
protected:
    void enter(LaunchOptions options = {})
    {
        options.screen = "live";
        open(std::move(options));
        served.emplace(std::vector<std::shared_ptr<AVCaptureDevice>>{camera}); // in the place of the window's own
        ASSERT_TRUE(driver->waitFor<LiveViewController>());
        live = driver->top<LiveViewController>();
    }
    /// Gives frames until the window shows it so.
    bool showsUntil(const std::function<bool()>& done)
    {
        return WindowDriver::waitUntil([&] {
            camera->give(solidPicture(64, 64, kOrange), CMTime::make(++frame, 30));
            return done();
        });
    }
    /// What the window shows at a share of the picture's width.
    QColor shownAt(double share)
    {
        CanvasItem* const canvas = driver->canvas();
        const QImage& image = canvas->shownImage();
        return image.isNull() ? QColor() : image.pixelColor(int(share * image.width()), image.height() / 4);
    }
    static bool isOrange(const QColor& color) { return color.red() > 180 && color.blue() < 70; }
    static bool isGray(const QColor& color)
    {
        return std::abs(color.red() - color.blue()) < 8 && color.red() > 90 && color.red() < 150;
    }

    const std::shared_ptr<StandInCamera> camera = std::make_shared<StandInCamera>();
    std::optional<ServedCameras> served;
    std::shared_ptr<LiveViewController> live;
    int frame = 0;
};

TEST_F(LiveRoad, ByTouch)
{
    LaunchOptions options;
    options.size = {480, 800}; // five looks stand side by side
    enter(options);
    ASSERT_TRUE(showsUntil([&] { return isOrange(shownAt(0.5)); }));
    ASSERT_TRUE(showsUntil([&] { return driver->item(QStringLiteral("Gray")) != nullptr; }));
    ASSERT_TRUE(driver->tap(QStringLiteral("Gray")));
    EXPECT_EQ(live->lookName(), "Gray");
    EXPECT_TRUE(showsUntil([&] { return isGray(shownAt(0.5)); }));

    ASSERT_TRUE(driver->tap(QStringLiteral("Compare")));
    EXPECT_TRUE(showsUntil([&] { return isOrange(shownAt(0.4)) && isGray(shownAt(0.6)); }));
    QQuickItem* const line = driver->item(QStringLiteral("Line between before and now"));
    ASSERT_NE(line, nullptr);
    driver->drag(WindowDriver::middleOf(*line), {line->width() / 4, 0});
    EXPECT_NEAR(live->line(), 0.75, 0.05);
    EXPECT_TRUE(showsUntil([&] { return isOrange(shownAt(0.6)) && isGray(shownAt(0.9)); }));

    ASSERT_TRUE(driver->tap(QStringLiteral("Still")));
    EXPECT_TRUE(showsUntil([&] { return driver->item(QStringLiteral("Your Image has been saved in Photos.")); }));

    ASSERT_TRUE(driver->tap(QStringLiteral("Clip")));
    EXPECT_TRUE(showsUntil([&] { return live->clipTime() != "0:00"; }));
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return driver->item(live->clipTime()) != nullptr; }));
    ASSERT_TRUE(driver->tap(live->clipTime()));
    EXPECT_TRUE(showsUntil([&] { return live->noticeShares(); }));
    ASSERT_TRUE(driver->tap(QStringLiteral("Share")));
    ASSERT_TRUE(driver->waitFor<UIActivityViewController>());
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<LiveViewController>());
    ASSERT_TRUE(driver->tap(QStringLiteral("Back")));
    EXPECT_TRUE(driver->waitFor<ViewController>());
    EXPECT_EQ(camera->running(), 0);
    EXPECT_EQ(documents().entryList({QStringLiteral("Clip *.mp4")}).size(), 1);
}

TEST_F(LiveRoad, ByKeys)
{
    const QTemporaryDir folder;
    const std::string movie = folder.filePath(QStringLiteral("Orange.mp4")).toStdString();
    ASSERT_TRUE(
        writeStillVideo({.picture = UIImage(solidPicture(64, 64, kOrange)), .seconds = 20, .soundFile = {}}, movie));
    LaunchOptions options;
    options.files = {movie};
    options.size = {1280, 800};
    enter(options);
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return isOrange(shownAt(0.5)); }));
    driver->press(Qt::Key_Space);
    EXPECT_TRUE(live->isPaused());
    for (int i = 0; i < 4; ++i)
        driver->press(Qt::Key_Right);
    EXPECT_EQ(live->lookName(), "Gray");
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return isGray(shownAt(0.5)); })) << "what stands still is filtered";
    driver->press(Qt::Key_C);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return isOrange(shownAt(0.4)) && isGray(shownAt(0.6)); }));
    pressUntil("Line between before and now");
    for (int i = 0; i < 10; ++i)
        driver->press(Qt::Key_Left);
    EXPECT_NEAR(live->line(), 0.3, 0.001);
    driver->press(Qt::Key_S);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return !live->notice().isEmpty(); }));
    driver->press(Qt::Key_R);
    EXPECT_TRUE(live->isRecording());
    EXPECT_FALSE(live->isPaused());
    driver->press(Qt::Key_R);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return live->noticeShares(); }));
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(driver->waitFor<ViewController>());
}

} // namespace
} // namespace lamina::test
