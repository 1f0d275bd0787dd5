// Work outlives the window, however that ends.
#include "WindowTest.h"

#include "CommandRunner.h"
#include "app/ViewController.h"
#include "editors/collage/CreateCollageViewController.h"
#include "editors/common/WorkKeeper.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/photos/PhotoSource.h"

#include <csignal>
#include <unistd.h>
#include <vector>

namespace lamina::test {
namespace {

constexpr const char* kStateOfTheKilled = "LAMINA_STATE_OF_THE_KILLED";

class KeptWorkRoad : public WindowTest {
protected:
    CGAffineTransform secondTransform()
    {
        return driver->top<BlendPhotoViewController>()->composition().photos[1].transform;
    }
    template <class Editor = BlendPhotoViewController>
    void goOn(const char* button)
    {
        ASSERT_NE(driver->item(QStringLiteral("Not saved yet")), nullptr);
        ASSERT_TRUE(driver->tap(QString::fromLatin1(button)));
        ASSERT_TRUE(driver->waitFor<Editor>());
    }
    /// Runs one of these tests, which kills its process, with this one's state.
    static void runKilled(const std::string& test)
    {
        const std::string state = qgetenv("XDG_STATE_HOME").toStdString();
        const CommandResult killed = runCommand(
            "/usr/bin/env",
            {"-u", "LAMINA_PRIVATE_BUS", "TMPDIR=" + QDir::homePath().toStdString(),
             std::string(kStateOfTheKilled) + '=' + state, QCoreApplication::applicationFilePath().toStdString(),
             "--gtest_also_run_disabled_tests", "--gtest_filter=KeptWorkRoad.DISABLED_" + test});
        ASSERT_EQ(killed.output.find("[       OK ]"), std::string::npos) << killed.output;
    }
};

/// Each of these runs in a process of its own, for the test after it.
TEST_F(KeptWorkRoad, DISABLED_IsKilledInTheMiddleOfADrag)
{
    qputenv("XDG_STATE_HOME", qgetenv(kStateOfTheKilled));
    open();
    goToBlend();
    driver->dragCanvas({30, -24});
    driver->beginDrag({40, 0});
    if (secondTransform().tx > 60)
        ::kill(::getpid(), SIGKILL);
}

TEST_F(KeptWorkRoad, AfterAKillAndAfterClosing)
{
    runKilled("IsKilledInTheMiddleOfADrag");
    open();
    goOn("Continue");
    EXPECT_NEAR(secondTransform().tx, 30, 1) << "the drag that was over counts";
    driver->dragCanvas({0, 10});
    driver->top<BlendPhotoViewController>()->nudge(-5, 0);
    driver.reset(); // at once

    open();
    goOn("Continue");
    EXPECT_NEAR(secondTransform().tx, 25, 1);
    EXPECT_NEAR(secondTransform().ty, -14, 1);
}

TEST_F(KeptWorkRoad, DISABLED_IsKilledWithACollage)
{
    qputenv("XDG_STATE_HOME", qgetenv(kStateOfTheKilled));
    open();
    driver->top<ViewController>()->beginCollage("threePhoto",
                                                std::vector(3, PhotoSource::fromFile(sample("dunes.jpg"))));
    ASSERT_TRUE(driver->waitFor<CreateCollageViewController>());
    driver->top<CreateCollageViewController>()->applyLayout(3005);
    driver->top<CreateCollageViewController>()->stickerImgGesture(6001);
    driver->dragCanvas({12, 0}); // the sticker lies under the finger
    driver->waitUntil([] { return false; }, 2 * WorkKeeper::kDelay);
    driver->settle(); // it is written by now
    if (!driver->top<CreateCollageViewController>()->composition().stickers.empty())
        ::kill(::getpid(), SIGKILL);
}

TEST_F(KeptWorkRoad, ACollageAfterAKillAndReopened)
{
    runKilled("IsKilledWithACollage");
    open();
    goOn<CreateCollageViewController>("Continue");
    const auto collage = [this] { return driver->top<CreateCollageViewController>(); };
    EXPECT_EQ(collage()->photoCount(), 3);
    EXPECT_EQ(collage()->layout(), 3005);
    ASSERT_EQ(collage()->composition().stickers.size(), 1u);
    const double x = collage()->composition().stickers[0].center.x;
    EXPECT_GT(x, 105) << "the drag that was over counts";
    ASSERT_TRUE(driver->tap(QStringLiteral("Back"))); // nothing is asked
    ASSERT_TRUE(driver->waitFor<ViewController>());
    goOn<CreateCollageViewController>("Reopen");
    EXPECT_EQ(collage()->composition().stickers[0].center.x, x);
}

TEST_F(KeptWorkRoad, WhoLeavesAnEditorFindsItsWorkAtHome)
{
    open();
    goToBlend();
    driver->press(Qt::Key_Right);
    ASSERT_TRUE(driver->tap(QStringLiteral("Back")));
    ASSERT_TRUE(driver->tap(QStringLiteral("YES")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(driver->waitFor<ViewController>());
    goOn("Reopen");
    EXPECT_EQ(secondTransform(), CGAffineTransform::translation(1, 0));
    ASSERT_TRUE(driver->tap(QStringLiteral("Back")));
    ASSERT_TRUE(driver->tap(QStringLiteral("YES")));
    ASSERT_TRUE(driver->waitFor<ViewController>());

    // By keys alone, and with the keyboard on a card when the work is gone.
    pressUntil("Discard");
    driver->press(Qt::Key_Return);
    EXPECT_EQ(alertText(), "⚠️|Discard this work?");
    EXPECT_EQ(driver->focusedName(), QStringLiteral("Keep"));
    pressUntil("Discard");
    driver->press(Qt::Key_Return);
    ASSERT_TRUE(driver->waitFor<ViewController>());
    EXPECT_EQ(driver->item(QStringLiteral("Not saved yet")), nullptr);
    EXPECT_EQ(driver->focusedName(), QStringLiteral("Two photos"));
}

} // namespace
} // namespace lamina::test
