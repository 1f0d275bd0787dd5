// A blend with all that can be done to it, by fingers: back and forth through its steps, out as a file, and discarded.
#include "WindowTest.h"

#include "TestPictures.h"
#include "editors/blend/BlendComposition.h"
#include "editors/blend/PickedImages.h"
#include "editors/colorpicker/InfColorPickerController.h"

#include <vector>

namespace lamina::test {
namespace {

class WholeRoad : public WindowTest {
protected:
    /// A step of the user's: what it leaves is kept.
    void step(const char* what)
    {
        EXPECT_TRUE(blend->canUndo()) << what;
        EXPECT_FALSE(looksAlike(blend->composition(), states.back())) << what;
        states.push_back(blend->composition());
    }
    void tapAsStep(const char* name)
    {
        ASSERT_TRUE(driver->tap(QString::fromLatin1(name))) << name;
        step(name);
    }
    void dragSlider(const char* name, double by)
    {
        const QQuickItem* const slider = driver->item(QString::fromLatin1(name));
        ASSERT_NE(slider, nullptr) << name;
        constexpr double kThumb = 22;
        const double way = slider->property("visualPosition").toDouble() * (slider->width() - kThumb);
        driver->drag(slider->mapToScene({kThumb / 2 + way, slider->height() / 2}), {by, 0});
        step(name);
    }
    void tapCanvas(CGPoint point) { driver->drag(inWindow(point), {}); }
    void dragCanvasFrom(CGPoint point, QPointF by, const char* what)
    {
        driver->drag(inWindow(point), by);
        step(what);
    }
    /// A new sticker, 60 points inside the square, which is selected.
    void addSticker(const char* name)
    {
        ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QString::fromLatin1(name)) != nullptr; }));
        tapAsStep(name);
        tapCanvas({160, 160});
        ASSERT_TRUE(blend->stickerActive());
    }

    std::shared_ptr<BlendPhotoViewController> blend;
    std::vector<BlendComposition> states;
};

TEST_F(WholeRoad, EverythingIsDoneUndoneAndSaved)
{
    open();
    goToBlend();
    blend = driver->top<BlendPhotoViewController>();
    states = {blend->composition()};

    driver->dragCanvas({30, -24});
    step("moved");
    driver->pinchCanvas(60, 90);
    step("zoomed");
    ASSERT_TRUE(driver->tap(QStringLiteral("Tools")));
    tapAsStep("Left");
    ASSERT_TRUE(driver->tap(QStringLiteral("Photo 1")));
    tapAsStep("Flip H");
    ASSERT_TRUE(driver->tap(QStringLiteral("Color")));
    ASSERT_TRUE(driver->waitFor<InfColorPickerController>());
    driver->drag(WindowDriver::middleOf(*driver->canvas()), {20, -30});
    tapAsStep("Done");
    ASSERT_TRUE(driver->waitFor<BlendPhotoViewController>());

    ASSERT_TRUE(driver->tap(QStringLiteral("Effects")));
    dragSlider("Contrast", 25);
    dragSlider("Brightness", -20);
    dragSlider("Contrast", -40);
    dragSlider("Contrast", 10); // however soon: another step
    dragSlider("Opacity", 30);
    ASSERT_TRUE(driver->tap(QStringLiteral("Hide")));

    // A sticker's handles: at the lower left its size, at the lower right its turn, at the upper left its end.
    ASSERT_TRUE(driver->tap(QStringLiteral("Sticker")));
    addSticker("Sun");
    dragCanvasFrom({78, 242}, {30, -40}, "resized");
    dragCanvasFrom({160, 160}, {-70, -60}, "dragged");
    addSticker("Cloud");
    dragCanvasFrom({242, 242}, {-60, 20}, "turned");
    dragCanvasFrom({160, 160}, {60, 70}, "dragged");
    addSticker("Rainbow");
    tapCanvas({78, 78});
    step("closed");
    ASSERT_EQ(blend->composition().stickers.size(), 2U);

    const auto finished = bytesOf(blend->renderedCanvas().cgImage());
    for (std::size_t i = states.size() - 1; i > 0; --i) {
        ASSERT_TRUE(driver->tap(QStringLiteral("Undo"))) << i;
        EXPECT_TRUE(looksAlike(blend->composition(), states[i - 1])) << i;
    }
    EXPECT_FALSE(driver->tap(QStringLiteral("Undo"))) << "one step each";
    for (std::size_t i = 1; i < states.size(); ++i) {
        ASSERT_TRUE(driver->tap(QStringLiteral("Redo"))) << i;
        EXPECT_TRUE(looksAlike(blend->composition(), states[i])) << i;
    }
    EXPECT_FALSE(driver->tap(QStringLiteral("Redo")));
    EXPECT_EQ(bytesOf(blend->renderedCanvas().cgImage()), finished);

    // A selected sticker is as plain in the file as one that is not, the second time too.
    tapCanvas({90, 100});
    ASSERT_TRUE(blend->stickerActive());
    tapCanvas({300, 20}); // beside it
    ASSERT_FALSE(blend->stickerActive());
    tapCanvas({90, 100});
    const QImage saved = saveAsPNG();
    EXPECT_FALSE(blend->stickerActive());
    driver->grab(); // with all that waits to be painted
    EXPECT_EQ(saved, driver->canvas()->shownImage().convertToFormat(QImage::Format_RGB32));
    tapCanvas({90, 100});
    EXPECT_TRUE(blend->stickerActive());
    EXPECT_EQ(saveAsPNG(), saved);

    ASSERT_TRUE(driver->tap(QStringLiteral("Back")));
    EXPECT_EQ(alertText(), "⚠️|Discard Editing");
    ASSERT_TRUE(driver->tap(QStringLiteral("YES")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_FALSE(firstPickedImage || secondPickedImage);
}

} // namespace
} // namespace lamina::test
