// A collage from the home screen to a file and back: by fingers, by keys, with all that can be done to it.
#include "StepsTest.h"

#include "SamplePhotos.h"
#include "TestPictures.h"
#include "app/ViewController.h"
#include "editors/collage/CollageComposition.h"
#include "editors/collage/CreateCollageViewController.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "export/PNGController.h"
#include "export/SavingTypeController.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/photos/PictureFolders.h"

#include <numbers>

namespace lamina::test {
namespace {

class CollageRoad : public StepsTest<CreateCollageViewController, CollageComposition> {
protected:
    static constexpr int kPhotos = 6;

    void SetUp() override
    {
        WindowTest::SetUp();
        QDir(QString::fromStdString(picturesFolder())).removeRecursively();
        addSamplePhotos(picturesFolder(), kPhotos, 0);
    }
    void waitForPicker()
    {
        ASSERT_TRUE(driver->waitFor<YMSPhotoPickerViewController>());
        const auto picker = driver->top<YMSPhotoPickerViewController>();
        ASSERT_TRUE(WindowDriver::waitUntil([&] { return picker->photosModel()->rowCount() == kPhotos + 1; }));
        driver->settle();
    }
    /// One finger does it; how often it did is counted.
    void touch(const char* name)
    {
        ++m_touches;
        ASSERT_TRUE(driver->tap(QString::fromUtf8(name))) << name;
    }
    void goToCollage(const char* card, int photos)
    {
        open();
        touch(card);
        waitForPicker();
        for (int item = 1; item <= photos; ++item, ++m_touches)
            tapTile(item);
        touch("Done");
        ASSERT_TRUE(driver->waitFor<CreateCollageViewController>());
        begin();
    }
    void tapTool(const char* identifier)
    {
        QString name;
        for (const QVariant& tool : editor->tools())
            if (tool.toMap()["identifier"] == QLatin1String(identifier))
                name = tool.toMap()["name"].toString();
        ASSERT_TRUE(driver->tap(name)) << identifier;
    }
    const CollageSlot& current() { return editor->composition().photoSlots[editor->composition().current]; }
    QString shownPanel() { return editor->shownPanel(); }
    bool isPointedOut() { return driver->called(QStringLiteral("slotOutline")) != nullptr; }
    int touches() const { return m_touches; }

private:
    int m_touches = 0;
};

TEST_F(CollageRoad, ThreePhotosAreAFileInEightTouches)
{
    documents().removeRecursively();
    goToCollage("Three photos", 3);
    touch("Save");
    ASSERT_TRUE(driver->waitFor<SavingTypeController>());
    touch("PNG");
    ASSERT_TRUE(driver->waitFor<PNGController>());
    touch("Save PNG");
    leaveShareScreen<CreateCollageViewController>();
    EXPECT_EQ(touches(), 8);
    const QImage saved(documents().filePath(QStringLiteral("default.png")));
    EXPECT_EQ(saved.size(), QSize(3 * kWidth, 3 * kWidth));

    ASSERT_TRUE(driver->tap(QStringLiteral("Back"))); // asks nothing
    EXPECT_TRUE(driver->waitFor<ViewController>());
}

TEST_F(CollageRoad, EverythingIsDoneUndoneAndSaved)
{
    goToCollage("Three photos", 3);
    tapTool("layout");
    tapAsStep("Three rows");
    ASSERT_TRUE(driver->tap(QStringLiteral("Photo 2")));
    driver->dragCanvas({24, -8});
    step("moved");
    driver->pinchCanvas(60, 90);
    step("zoomed");
    driver->turnCanvas(std::numbers::pi / 6);
    step("turned");

    tapTool("tools");
    tapAsStep("Left");
    tapAsStep("Flip V");
    ASSERT_TRUE(driver->tap(QStringLiteral("Color")));
    ASSERT_TRUE(driver->waitFor<InfColorPickerController>());
    driver->drag(WindowDriver::middleOf(*driver->canvas()), {20, -30});
    tapAsStep("Done");
    ASSERT_TRUE(driver->waitFor<CreateCollageViewController>());

    tapTool("filter");
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QStringLiteral("Sepia")) != nullptr; }));
    tapAsStep("Sepia");
    ASSERT_TRUE(driver->tap(QStringLiteral("Photo 3")));
    tapTool("fx");
    dragSlider("Contrast", 25);
    dragSlider("Brightness", -20);
    ASSERT_TRUE(driver->tap(QStringLiteral("Hide")));
    EXPECT_EQ(shownPanel(), QString());

    tapTool("sticker");
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QStringLiteral("Sun")) != nullptr; }));
    tapAsStep("Sun");
    tapCanvas({100, 100});
    ASSERT_TRUE(editor->stickerActive());
    dragCanvasFrom({100, 100}, {40, 60}, "sticker moved");

    tapTool("reset");
    step("Reset");
    dragSlider("Border width", 30);
    dragSlider("Gap", 40);

    const auto finished = bytesOf(editor->renderedCanvas().cgImage());
    goBackAndForth();
    EXPECT_EQ(bytesOf(editor->renderedCanvas().cgImage()), finished);
    const QImage saved = saveAsPNG<CreateCollageViewController>();
    driver->grab(); // with all that waits to be painted
    EXPECT_EQ(saved, driver->canvas()->shownImage().convertToFormat(QImage::Format_RGB32));
}

TEST_F(CollageRoad, AnotherPhotoPointsOutTheCurrentOneAndTwoSwapByAFinger)
{
    goToCollage("Three photos", 3);
    const CGPoint inThird(0.9 * kWidth, 0.5 * kWidth);
    tapCanvas({0.1 * kWidth, 0.5 * kWidth});
    EXPECT_FALSE(isPointedOut()) << "of the current one";
    tapCanvas(inThird);
    EXPECT_TRUE(isPointedOut());
    EXPECT_EQ(editor->currentSlot(), 1);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return !isPointedOut(); }));

    driver->drag(inWindow({0.1 * kWidth, 0.5 * kWidth}), {40, 0});
    step("moved");
    driver->doubleTapAt(inWindow({0.1 * kWidth, 0.5 * kWidth}));
    EXPECT_TRUE(looksAlike(editor->composition(), states.front())) << "it fits its slot again";

    const UIImage first = editor->selectedImg1();
    const QPointF from = WindowDriver::middleOf(*driver->item(QStringLiteral("Photo 1")));
    const QPointF to = WindowDriver::middleOf(*driver->item(QStringLiteral("Photo 3")));
    driver->drag(from, {0, -60});
    EXPECT_EQ(bytesOf(editor->selectedImg1().cgImage()), bytesOf(first.cgImage())) << "dropped beside all";
    driver->drag(from, to - from);
    EXPECT_EQ(bytesOf(editor->selectedImg3().cgImage()), bytesOf(first.cgImage()));
    EXPECT_EQ(editor->currentSlot(), 1) << "a drag presses nothing";
}

TEST_F(CollageRoad, ByKeysAlone)
{
    open();
    pressUntil("Two photos");
    driver->press(Qt::Key_Return);
    waitForPicker();
    driver->press(Qt::Key_Right);
    driver->press(Qt::Key_X);
    driver->press(Qt::Key_Right);
    driver->press(Qt::Key_X);
    driver->press(Qt::Key_Return);
    ASSERT_TRUE(driver->waitFor<CreateCollageViewController>());
    begin();
    driver->press(Qt::Key_3); // there is none
    EXPECT_EQ(editor->currentSlot(), 1);
    driver->press(Qt::Key_2);
    EXPECT_EQ(editor->currentSlot(), 2);
    const CGPoint center = current().center;
    driver->pressOnly(Qt::Key_Right); // one series, however slow the machine is
    driver->press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(current().center, (CGPoint{center.x + 1, center.y + 10}));
    driver->press(Qt::Key_Plus);
    EXPECT_NEAR(current().transform.a, 1.1, 1e-6);
    driver->press(Qt::Key_Period);
    EXPECT_GT(current().transform.b, 0);
    driver->press(Qt::Key_Home);
    EXPECT_EQ(current().transform, CGAffineTransform());
    EXPECT_EQ(current().center, center);

    const UIImage second = editor->selectedImg2();
    driver->press(Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(bytesOf(editor->selectedImg1().cgImage()), bytesOf(second.cgImage()));
    EXPECT_EQ(editor->currentSlot(), 1) << "it stays in hand";
    driver->press(Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier); // no further
    EXPECT_EQ(editor->currentSlot(), 1);

    // A strip is one stop, with arrows inside; what is in force comes first.
    driver->press(Qt::Key_2, Qt::AltModifier);
    EXPECT_EQ(shownPanel(), QStringLiteral("layout"));
    pressUntil("Diagonal");
    driver->press(Qt::Key_Right);
    driver->press(Qt::Key_Right);
    driver->press(Qt::Key_Return);
    EXPECT_EQ(editor->layout(), 2002);
    driver->press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editor->layout(), 2000);
    driver->press(Qt::Key_7, Qt::AltModifier);
    EXPECT_EQ(shownPanel(), QStringLiteral("frame"));
    driver->press(Qt::Key_Escape);
    EXPECT_EQ(shownPanel(), QString());
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(driver->waitFor<ViewController>());
}

} // namespace
} // namespace lamina::test
