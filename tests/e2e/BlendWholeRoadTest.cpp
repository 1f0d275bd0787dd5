// A blend with all that can be done to it, by fingers: back and forth through its steps, out as a file, and discarded.
#include "StepsTest.h"

#include "TestPictures.h"
#include "app/ImagePIckingViewController.h"
#include "editors/blend/BlendComposition.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/blend/PickedImages.h"
#include "editors/colorpicker/InfColorPickerController.h"

namespace lamina::test {
namespace {

class WholeRoad : public StepsTest<BlendPhotoViewController, BlendComposition> {
protected:
    /// A new sticker, 60 points inside the square, which is selected.
    void addSticker(const char* name)
    {
        ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QString::fromLatin1(name)) != nullptr; }));
        tapAsStep(name);
        tapCanvas({160, 160});
        ASSERT_TRUE(editor->stickerActive());
    }
};

TEST_F(WholeRoad, EverythingIsDoneUndoneAndSaved)
{
    open();
    goToBlend();
    begin();

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
    ASSERT_EQ(editor->composition().stickers.size(), 2U);

    const auto finished = bytesOf(editor->renderedCanvas().cgImage());
    goBackAndForth();
    EXPECT_EQ(bytesOf(editor->renderedCanvas().cgImage()), finished);

    // A selected sticker is as plain in the file as one that is not, the second time too.
    tapCanvas({90, 100});
    ASSERT_TRUE(editor->stickerActive());
    tapCanvas({300, 20}); // beside it
    ASSERT_FALSE(editor->stickerActive());
    tapCanvas({90, 100});
    const QImage saved = saveAsPNG();
    EXPECT_FALSE(editor->stickerActive());
    driver->grab(); // with all that waits to be painted
    EXPECT_EQ(saved, driver->canvas()->shownImage().convertToFormat(QImage::Format_RGB32));
    tapCanvas({90, 100});
    EXPECT_TRUE(editor->stickerActive());
    EXPECT_EQ(saveAsPNG(), saved);

    ASSERT_TRUE(driver->tap(QStringLiteral("Back")));
    EXPECT_EQ(alertText(), "⚠️|Discard Editing");
    ASSERT_TRUE(driver->tap(QStringLiteral("YES")));
    ASSERT_TRUE(driver->waitFor<ImagePIckingViewController>());
    EXPECT_FALSE(firstPickedImage || secondPickedImage);
}

} // namespace
} // namespace lamina::test
